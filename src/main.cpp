// Entry point; replaced by the shell when it lands.
int main() { return 0; }
