#pragma once
// Quaternion: four plain components (x, y, z the vector part, w the scalar part), registered with the
// type manager as "tov::utils::Quaternionr" for double, each component a property.
//   tov::utils::Quaternion<double> identity(0.0, 0.0, 0.0, 1.0);
//   identity.getW();   // 1.0

namespace tov {
namespace utils {

template <typename T>
class Quaternion {
public:
    Quaternion() : x(), y(), z(), w() {}
    Quaternion(const T& x, const T& y, const T& z, const T& w) : x(x), y(y), z(z), w(w) {}

    const T& getX() const { return x; }
    void setX(const T& value) { x = value; }
    const T& getY() const { return y; }
    void setY(const T& value) { y = value; }
    const T& getZ() const { return z; }
    void setZ(const T& value) { z = value; }
    const T& getW() const { return w; }
    void setW(const T& value) { w = value; }

    bool operator==(const Quaternion& other) const
    {
        return x == other.x && y == other.y && z == other.z && w == other.w;
    }
    bool operator!=(const Quaternion& other) const { return !(*this == other); }

    T x;
    T y;
    T z;
    T w;
};

} // namespace utils
} // namespace tov
