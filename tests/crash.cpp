// Crashes on purpose.

int main() {
    volatile int* nowhere = nullptr;
    *nowhere = 1;
}
