// Crashes on purpose.

int main() {
    // Hidden from those who look for such things.
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1; // NOLINT(clang-analyzer-core.NullDereference): that is what it is for
}
