#include "tools/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace vsps::tool {

namespace {

// The same file under two names (links included): on POSIX systems the same
// device and inode; false when either does not exist.
bool same_file(const std::string& a, const std::string& b) {
  std::error_code ec;
  return std::filesystem::equivalent(a, b, ec) && !ec;
}

std::string write_error(const std::string& name, int err) {
  return name + ": write error (" + std::strerror(err != 0 ? err : EIO) + ")";
}

}  // namespace

bool output_is_not_an_input(const std::string& output, const std::vector<std::string>& inputs, std::string* error) {
  for (const std::string& in : inputs)
    if (output == in || same_file(output, in)) {
      *error = output + ": names the input " + in + "; writing it would destroy the input (choose another output)";
      return false;
    }
  return true;
}

OutputFile::~OutputFile() {
  if (owned_ && file_ != nullptr) std::fclose(file_);
}

bool OutputFile::create(const std::string& path, std::string* error) {
  file_ = std::fopen(path.c_str(), "wb");
  if (file_ == nullptr) {
    *error = path + ": cannot create (" + std::strerror(errno) + ")";
    return false;
  }
  owned_ = true;
  name_ = path;
  return true;
}

void OutputFile::use_stream(FILE* f, const char* name) {
  file_ = f;
  owned_ = false;
  name_ = name;
}

bool OutputFile::finish(std::string* error) {
  if (!owned_) return flush_checked(file_, name_.c_str(), error);
  errno = 0;
  const bool written = std::fflush(file_) == 0 && std::ferror(file_) == 0;
  const int flushErrno = errno;
  const bool closed = std::fclose(file_) == 0;
  const int closeErrno = errno;
  file_ = nullptr;
  owned_ = false;
  if (written && closed) return true;
  *error = write_error(name_, written ? closeErrno : flushErrno);
  return false;
}

bool flush_checked(FILE* f, const char* name, std::string* error) {
  errno = 0;
  if (std::fflush(f) == 0 && std::ferror(f) == 0) return true;
  *error = write_error(name, errno);
  return false;
}

}  // namespace vsps::tool
