// The nodes of a mesh have changed since they were saved when their checksum has.
#include <TuvoUtil/Checksum.h>

#include <cstdio>
#include <vector>

int main()
{
    const int ids[] = {1, 2, 7};
    std::vector<_TvPoint3Str> places = {{0.0, 0.0, 0.0}, {2.5, 0.0, 0.0}, {2.5, 1.25, 0.0}};
    VChecksum nodes;
    for (const int id : ids)
        nodes.Compute(id);
    VChecksum saved(nodes), now(nodes);
    saved.Compute(places);
    places[2].y += 1e-12;
    now.Compute(places);
    std::printf("saved: %08X\n", saved.GetChecksum());
    std::printf("changed: %d\n", now.GetChecksum() != saved.GetChecksum());

    VChecksum text;
    text.Compute(BuString(L"123456789"));
    std::printf("CRC-32 of the text: %08X\n", ~text.GetChecksum());
}
