// Built into the tests only with DATABASE_SANITIZE_THREAD.
//
// The system's Qt is not built with ThreadSanitizer, so the hand-over that it
// makes with locks and atomics of its own is invisible to it: the event that
// carries a queued signal, made on the sending thread and freed on the
// receiving one, or a QFuture's state freed after the pool signalled its end.
// Those are memory operations that Qt itself asks for; the sanitizer is told
// to watch only what instrumented code does, ours.
extern "C" char const* __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}
