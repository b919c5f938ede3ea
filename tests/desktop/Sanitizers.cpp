// How the tests run in a build with the sanitizers. Here and not in the environment, which the engine's own
// processes would inherit.
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>

#include <cstddef>

extern "C" {

const char* __asan_default_options() { return "detect_stack_use_after_return=1:strict_string_checks=1"; }
const char* __ubsan_default_options() { return "print_stacktrace=1"; }
const char* __lsan_default_options() { return "print_suppressions=0:suppressions=" VELMORA_TEST_LEAKS; }

/// glib's first table of names is the first memory of this size. As the names become more it leaves the table behind,
/// on purpose, and no stack tells where it came from.
void __sanitizer_malloc_hook(const volatile void* memory, std::size_t bytes)
{
    static bool isKnown = false;
    constexpr std::size_t kNames = 2048;
    if (isKnown || bytes != kNames * sizeof(char*)) return;
    isKnown = true;
    __lsan_ignore_object(const_cast<const void*>(memory));
}

void __sanitizer_free_hook(const volatile void*) {}

}  // extern "C"
#endif
