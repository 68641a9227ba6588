// The plain records that several families share.
#pragma once

// A point in the plane, in whatever unit the caller works in.
struct _TvPoint2Str
{
    // Its coordinates.
    double x;
    double y;
};

// A point in space, in whatever unit the caller works in.
struct _TvPoint3Str
{
    // Its coordinates.
    double x;
    double y;
    double z;
};

static_assert(sizeof(_TvPoint2Str) == 16 && sizeof(_TvPoint3Str) == 24);
