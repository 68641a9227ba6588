// The plain records that several families share.
#pragma once

// Coordinates in the plane and in space, in whatever unit the caller works in.
struct _TvPoint2Str
{
    double x;
    double y;
};

struct _TvPoint3Str
{
    double x;
    double y;
    double z;
};

static_assert(sizeof(_TvPoint2Str) == 16 && sizeof(_TvPoint3Str) == 24);
