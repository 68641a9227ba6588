#include <basutl/BuString.h>

#include <cstdio>

int main()
{
    BuString text;
    text.Format(L"%s: %d", L"bolts", 3);
    std::puts(text.ToNarrow().c_str());
    return text == L"bolts: 3" ? 0 : 1;
}
