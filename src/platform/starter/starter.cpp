// Starts a Windows program under Wine with a command line that is right to the byte, and waits until it and all that it
// started have ended; its exit code becomes ours. The environment variable VARNIK_START holds, in hexadecimal digits,
// the path of the program on the host, a slash, and what follows the program on the line.
//
// A Windows program without the C runtime library: it has to run in any prefix.
#include <windows.h>

namespace {

constexpr DWORD kLimit = 0x8000;  // Windows' limit for a command line

char encoded[4 * kLimit];
char program[kLimit];
char tail[kLimit];
wchar_t line[kLimit];

int DigitValue(char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; }

// Gives the place behind the decoded part; nothing when that does not fit.
const char* Decode(const char* digits, char (&bytes)[kLimit]) {
  DWORD length = 0;
  for (; digits[0] && digits[0] != '/'; digits += 2) {
    if (length + 1 >= kLimit || !digits[1]) return nullptr;
    bytes[length++] = static_cast<char>(DigitValue(digits[0]) << 4 | DigitValue(digits[1]));
  }
  return *digits ? digits + 1 : digits;
}

bool ReadOrder() {
  constexpr char kVariable[] = "VARNIK_START";
  const DWORD length = GetEnvironmentVariableA(kVariable, encoded, sizeof encoded);
  SetEnvironmentVariableA(kVariable, nullptr);
  if (length == 0 || length >= sizeof encoded) return false;
  const char* const second = Decode(encoded, program);
  return second && Decode(second, tail);
}

// What Wine itself calls a file of the host.
const wchar_t* WindowsName(const char* hostPath) {
  using Translate = wchar_t*(CDECL*)(const char*);
  const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32"), "wine_get_dos_file_name");
  return found ? reinterpret_cast<Translate>(reinterpret_cast<void*>(found))(hostPath) : nullptr;
}

// Bytes that are valid UTF-8 are that, any others Windows-1252, whatever the code page of the prefix.
bool AppendTail(wchar_t* to, int size) {
  constexpr UINT kWindows1252 = 1252;
  return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, tail, -1, to, size) != 0 ||
         MultiByteToWideChar(kWindows1252, 0, tail, -1, to, size) != 0;
}

bool BuildLine(const wchar_t* name) {
  const int length = lstrlenW(name);
  if (length + 3 >= static_cast<int>(kLimit)) return false;
  line[0] = L'"';
  lstrcpyW(line + 1, name);
  line[length + 1] = L'"';
  return AppendTail(line + length + 2, static_cast<int>(kLimit) - length - 2);
}

// A job whose port says when its last process has ended.
HANDLE PortOf(HANDLE job) {
  static JOBOBJECT_ASSOCIATE_COMPLETION_PORT association;
  association.CompletionPort = CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 1);
  const BOOL done =
      SetInformationJobObject(job, JobObjectAssociateCompletionPortInformation, &association, sizeof association);
  return done ? association.CompletionPort : nullptr;
}

void AwaitLast(HANDLE port) {
  DWORD message = 0;
  ULONG_PTR key = 0;
  OVERLAPPED* unused = nullptr;
  while (message != JOB_OBJECT_MSG_ACTIVE_PROCESS_ZERO)
    if (!GetQueuedCompletionStatus(port, &message, &key, &unused, INFINITE)) return;
}

// A program may start others outside the job, as it may without a starter.
void AllowBreakaway(HANDLE job) {
  static JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits;
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_BREAKAWAY_OK;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
}

// The program talks to whom we talk to.
bool Start(const wchar_t* name, PROCESS_INFORMATION& started) {
  static STARTUPINFOW info;
  info.cb = sizeof info;
  info.dwFlags = STARTF_USESTDHANDLES;
  info.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  info.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  info.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  return CreateProcessW(name, line, nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr, &info, &started);
}

DWORD Run() {
  static PROCESS_INFORMATION started;
  const wchar_t* const name = ReadOrder() ? WindowsName(program) : nullptr;
  if (!name || !BuildLine(name) || !Start(name, started)) return 127;
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  AllowBreakaway(job);
  const HANDLE port = PortOf(job);
  const bool inJob = port && AssignProcessToJobObject(job, started.hProcess);
  ResumeThread(started.hThread);
  WaitForSingleObject(started.hProcess, INFINITE);
  if (inJob) AwaitLast(port);
  DWORD status = 127;
  GetExitCodeProcess(started.hProcess, &status);
  return status;
}

}  // namespace

extern "C" void Enter() { ExitProcess(Run()); }
