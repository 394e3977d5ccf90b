#include <QtGlobal>

extern "C" Q_DECL_EXPORT int something_else()
{
    return 0;
}
