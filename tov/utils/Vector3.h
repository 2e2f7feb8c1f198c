#pragma once
// Vector3: three plain coordinates, registered with the type manager as "tov::utils::Vector3r" for
// double, whose "x", "y" and "z" are properties read and written through the accessors below.
//   tov::utils::Vector3<double> velocity(1.0, 0.0, -2.5);
//   velocity.setZ(0.0);   // velocity.getZ() == 0.0

namespace tov {
namespace utils {

template <typename T>
class Vector3 {
public:
    Vector3() : x(), y(), z() {}
    Vector3(const T& x, const T& y, const T& z) : x(x), y(y), z(z) {}

    const T& getX() const { return x; }
    void setX(const T& value) { x = value; }
    const T& getY() const { return y; }
    void setY(const T& value) { y = value; }
    const T& getZ() const { return z; }
    void setZ(const T& value) { z = value; }

    bool operator==(const Vector3& other) const { return x == other.x && y == other.y && z == other.z; }
    bool operator!=(const Vector3& other) const { return !(*this == other); }

    T x;
    T y;
    T z;
};

} // namespace utils
} // namespace tov
