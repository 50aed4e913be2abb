// Where a command writes: the shared checks every command makes on an
// output path, and a writer that reports every write error, on a file as on
// the standard output.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace vsps::tool {

// False with "OUT: names the input IN; ..." in *error when the output path
// is one of the inputs: the same path, or another name for the same file
// (a link; same device and inode). An output that does not exist yet names
// no input.
bool output_is_not_an_input(const std::string& output, const std::vector<std::string>& inputs, std::string* error);

// A command's output: a file it creates, or the standard output it was
// given. Every write goes through file(); finish() flushes and reports the
// first write error ("NAME: write error (reason)"), so a full disk or
// /dev/full is an error and not a silently short file.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // Creates (truncates) path; false with "PATH: cannot create (reason)".
  bool create(const std::string& path, std::string* error);
  // Writes to an open stream it does not own (the standard output).
  void use_stream(FILE* f, const char* name);
  FILE* file() const { return file_; }
  // Flushes, closes a created file, and checks every write since it opened.
  bool finish(std::string* error);

 private:
  FILE* file_ = nullptr;
  bool owned_ = false;
  std::string name_;
};

// Flushes a stream the tool did not open (the standard output) and checks
// it for write errors; false with "NAME: write error (reason)".
bool flush_checked(FILE* f, const char* name, std::string* error);

}  // namespace vsps::tool
