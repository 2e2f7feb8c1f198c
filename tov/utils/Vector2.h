#pragma once
// Vector2: a plain pair of coordinates, registered with the type manager as "tov::utils::Vector2r" for
// double, whose "x" and "y" are properties read and written through the accessors below.
//   tov::utils::Vector2<double> position(1.0, 2.0);
//   position.setY(3.0);   // position.getY() == 3.0

namespace tov {
namespace utils {

template <typename T>
class Vector2 {
public:
    Vector2() : x(), y() {}
    Vector2(const T& x, const T& y) : x(x), y(y) {}

    const T& getX() const { return x; }
    void setX(const T& value) { x = value; }
    const T& getY() const { return y; }
    void setY(const T& value) { y = value; }

    bool operator==(const Vector2& other) const { return x == other.x && y == other.y; }
    bool operator!=(const Vector2& other) const { return !(*this == other); }

    T x;
    T y;
};

} // namespace utils
} // namespace tov
