// Geometry value types.
#pragma once

struct OxGePoint2d {
    double x = 0, y = 0;
    OxGePoint2d() = default;
    OxGePoint2d(double x_, double y_) : x(x_), y(y_) {}
    bool operator==(const OxGePoint2d& o) const { return x == o.x && y == o.y; }
};

struct OxGePoint3d {
    double x = 0, y = 0, z = 0;
    OxGePoint3d() = default;
    OxGePoint3d(double x_, double y_, double z_ = 0) : x(x_), y(y_), z(z_) {}
    bool operator==(const OxGePoint3d& o) const { return x == o.x && y == o.y && z == o.z; }
};

struct OxGeVector3d {
    double x = 0, y = 0, z = 0;
    OxGeVector3d() = default;
    OxGeVector3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    bool operator==(const OxGeVector3d& o) const { return x == o.x && y == o.y && z == o.z; }
};

struct OxGeScale3d {
    double sx = 1, sy = 1, sz = 1;
    bool operator==(const OxGeScale3d& o) const { return sx == o.sx && sy == o.sy && sz == o.sz; }
};
