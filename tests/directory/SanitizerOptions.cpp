// GLib begins a second block of its table of quarks by leaving the first one behind, for threads
// that may still read it. GStreamer's decoders need that many quarks. The first block comes from
// GLib's constructor, which only whole stacks show.

extern "C" {
__attribute__((visibility("default"))) const char *__asan_default_options();
__attribute__((visibility("default"))) const char *__lsan_default_suppressions();

const char *__asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}

const char *__lsan_default_suppressions()
{
    return "leak:_dl_init\n";
}
}
