// For the targets that look for no leaks, because Qt's own JSON reader has one: Qt 5.15 loses the array or object of a
// key that comes twice in an object. With an application, fontconfig loses its configuration, too. The contract tests
// look for leaks.

// The sanitizer asks for this name.
#ifdef __clang__
#    pragma clang diagnostic ignored "-Wreserved-identifier"
#endif
extern "C" int __lsan_is_turned_off(); // NOLINT
extern "C" int __lsan_is_turned_off()  // NOLINT
{
    return 1;
}
