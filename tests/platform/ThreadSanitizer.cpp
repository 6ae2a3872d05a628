// The sound libraries are not instrumented: what their own threads hand to each other through shared memory or
// descriptors looks like a race. Named as narrowly as the sanitizer allows, so that our callbacks below them stay
// watched.
#if defined(__SANITIZE_THREAD__)
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "race:pa_srbchannel_\n"  // libpulse's ring in memory shared with the server
         "race:pa_iochannel_\n"
         "race:JackCapture\n"        // the port buffers that the server passes from client to client
         "race:interceptor_close\n"  // its notification socket, after a server was killed
         "thread:librtaudio.so\n";   // it never joins the thread of that case
}
#endif
