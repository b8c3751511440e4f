/* What Microsoft's compiler would bring to a program in C: its beginning and its end. */
int _fltused = 0;

int main(void);
__declspec(noreturn) void exit(int code);

void mainCRTStartup(void) { exit(main()); }
