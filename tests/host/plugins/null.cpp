#include <QtGlobal>

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *)
{
    return nullptr;
}
