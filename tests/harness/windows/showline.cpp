// A stand-in for the game as a Windows program: writes the line that it was started with to line.txt in its folder, in
// UTF-8.
// With `--again` at its end it starts itself once more, outside its job and with `--late`, and does not wait.
#include <windows.h>

namespace {

bool EndsWith(const char* text, const char* word) {
  const int start = lstrlenA(text) - lstrlenA(word);
  return start >= 0 && lstrcmpA(text + start, word) == 0;
}

void Write(const char* file, const char* text) {
  const HANDLE opened = CreateFileA(file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(opened, text, static_cast<DWORD>(lstrlenA(text)), &written, nullptr);
  CloseHandle(opened);
}

void StartAgain() {
  static STARTUPINFOA info;
  static PROCESS_INFORMATION started;
  static char line[] = "bzone.exe --late";
  info.cb = sizeof info;
  CreateProcessA(nullptr, line, nullptr, nullptr, FALSE, CREATE_BREAKAWAY_FROM_JOB, nullptr, nullptr, &info, &started);
}

}  // namespace

extern "C" void Enter() {
  static char line[0x10000];
  WideCharToMultiByte(CP_UTF8, 0, GetCommandLineW(), -1, line, sizeof line, nullptr, nullptr);
  if (EndsWith(line, "--late")) {
    Sleep(1500);
    Write("late.txt", line);
  } else {
    Write("line.txt", line);
    if (EndsWith(line, "--again")) StartAgain();
  }
  ExitProcess(7);
}
