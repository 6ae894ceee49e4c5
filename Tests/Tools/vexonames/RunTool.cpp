#include "vexonames/RunTool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

/// A folder that goes when the test program ends.
class TFolder {
 public:
  TFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vexonames-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  TFolder(const TFolder&) = delete;
  TFolder& operator=(const TFolder&) = delete;
  ~TFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

const TFolder& Folder() {
  static const TFolder folder;
  return folder;
}

}  // namespace

TRunResult RunTool(const std::vector<std::string>& arguments, const std::string& in) {
  const std::string outFile = Folder().File("out");
  std::filesystem::remove(outFile);
  return RunToolInto(outFile, arguments, in);
}

TRunResult RunToolInto(const std::string& outFile, const std::vector<std::string>& arguments, const std::string& in) {
  const std::string inFile = FileWith("in", in);
  const std::string errFile = FileWith("err", "");
  std::vector<std::string> words = {VEXONAMES_TOOL};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, inFile.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, outFile.c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errFile.c_str(), O_WRONLY, 0);
  pid_t process = 0;
  const int error = posix_spawn(&process, VEXONAMES_TOOL, &files, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (error != 0) throw std::runtime_error(VEXONAMES_TOOL " does not start");
  int status = 0;
  waitpid(process, &status, 0);
  const bool isFile = std::filesystem::is_regular_file(outFile);
  return {isFile ? ReadAll(outFile) : "", ReadAll(errFile), WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

std::string FileWith(const std::string& name, const std::string& content) {
  const std::string path = Folder().File(name);
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string ReadAll(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error(file + " cannot be read");
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

const std::string& ShopFile() {
  static const std::string file = FileWith("shop.json", R"json({"names": {
    "customer": {"Type": "Name", "Value": "Lefèvre & Fils", "Description": "Customer", "Category": "job"},
    "endcustomer": {"Value": "株式会社 青空", "Type": "Name", "Description": "End customer"},
    "jobnr": {"Type": "Number", "Value": 4711},
    "sheet": {"Type": "AutoNumber", "Value": 0, "Format": "%03d"},
    "last": {"Type": "AutoNumber", "Value": 2147483647},
    "file": {"Type": "Name", "Value": "4711_cover_v3.pdf"},
    "part": {"Type": "Name", "Value": "<<file/>>", "Elem": "_,1"},
    "broken": {"Type": "Name", "Value": "1<<nope/>>2"},
    "outer": {"Type": "Name", "Value": "[<<broken/>>]"},
    "self": {"Type": "Name", "Value": "<<self/>>"},
    "ping": {"Type": "Name", "Value": "a<<pong/>>"},
    "pong": {"Type": "Name", "Value": "b<<ping/>>"},
    "counting": {"Type": "Name", "Value": "<<sheet/>> <<nope/>>"},
    "unknown": {"Type": "Number", "Value": null},
    "slow": {"Type": "Name", "Value": "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa!", "RegEx": "(a+)+$"},
    "due": {"Type": "Time", "Value": {"$time": "2026-05-29T15:00:00Z"}},
    "now": {"Type": "Time", "Format": "%Y-%m-%d %H:%M:%S"},
    "folder": {"Type": "URL", "Value": {"$url": "file://srv/a b/c%20d"}}
  }})json");
  return file;
}
