#include <TuvoUtil/SystemInfo.h>

#define MODULE_VERSION TUVO_VERSION ".000"

const char* TuvoUtil_get_module_info(int selector)
{
    switch (selector) {
        case 0:
            return "Dynamic linked library";
        case 1:
            return MODULE_VERSION;
        default:
            return "TuvoUtil " MODULE_VERSION ", built " __DATE__ " " __TIME__;
    }
}
