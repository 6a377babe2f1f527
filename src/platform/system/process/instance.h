#pragma once

#include <functional>
#include <memory>
#include <string>

// One instance per user and display. The claim dies with the process that holds it, so a killed instance leaves nothing
// behind that could be mistaken for a running one, and of two starts at the same moment exactly one wins.
namespace win {

class FileLock;

class Instance {
 public:
  // Claims the place of the running instance if it is free.
  Instance();
  ~Instance();
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  // True while another process holds the place. Tries to claim it again when that process has gone.
  bool OtherIsRunning();

  // Asks the other instance to close, as the close box of its window does, and does not wait for it. Does nothing when
  // there is none.
  void CloseOther();

  // Called from DoEvents, or the event loop, when another process asks this one to close.
  void OnCloseRequest(std::function<void()> handler);

  // Readable when a request waits; -1 while another holds the place. HandleRequests answers all that wait.
  int Descriptor() const;
  void HandleRequests();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Held by the program that changes the game's files or runs the game. Free again when its holder dies.
class ExclusiveLock {
 public:
  // `name` names the lock within the user's configuration folder.
  explicit ExclusiveLock(const char* name);
  ~ExclusiveLock();
  ExclusiveLock(const ExclusiveLock&) = delete;
  ExclusiveLock& operator=(const ExclusiveLock&) = delete;

  // False when another process holds it. Holding it already counts as success; so does a file that cannot be made,
  // which is said on standard error and holds nothing.
  [[nodiscard]] bool TryAcquire();
  void Release();
  bool IsHeld() const;

 private:
  std::string path_;
  std::unique_ptr<FileLock> lock_;
};

// Keeps every other process from locking the same folder, whoever runs it and under whatever name, and leaves no file
// there. Locks of one folder nest within a process.
class FolderLock {
 public:
  // A Windows path.
  explicit FolderLock(const std::string& folder);

  // False while another process holds the lock. A folder that cannot be locked at all is not refused.
  [[nodiscard]] bool IsAllowed() const { return allowed_; }

 private:
  std::shared_ptr<FileLock> lock_;
  bool allowed_ = true;
};

}  // namespace win
