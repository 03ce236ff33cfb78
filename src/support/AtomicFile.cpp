#include "support/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <vector>

#include "support/RuntimeError.h"

namespace saltmarrow {

namespace {

constexpr int kDiskFull = 61;

int errorNumberOf(int e) {
    switch (e) {
        case ENOENT:
        case ENOTDIR:
            return err::PathNotFound;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return kDiskFull;
        default:
            return err::PermissionDenied;
    }
}

// Closes and removes the temporary file unless it was renamed into place.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string pattern) : name_(std::move(pattern)) {
        std::vector<char> buf(name_.begin(), name_.end());
        buf.push_back('\0');
        fd_ = ::mkstemp(buf.data());
        created_ = fd_ >= 0;
        if (created_) name_ = buf.data();
    }
    ~TemporaryFile() {
        if (fd_ >= 0) ::close(fd_);
        if (created_ && !kept_) ::unlink(name_.c_str());
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    bool opened() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    const std::string &name() const { return name_; }
    // Closes the descriptor; false if the last writes failed at close.
    bool close() {
        int rc = ::close(fd_);
        fd_ = -1;
        return rc == 0;
    }
    void keep() { kept_ = true; }

private:
    std::string name_;
    int fd_ = -1;
    bool created_ = false;
    bool kept_ = false;
};

[[noreturn]] void fail(int e) {
    raiseError(errorNumberOf(e));
}

}  // namespace

void replaceFileAtomically(const std::string &linkOrFile, std::string_view bytes) {
    namespace fs = std::filesystem;
    // A link keeps pointing where it did: the file it names is replaced.
    std::error_code ec;
    const fs::path resolved = fs::is_symlink(linkOrFile, ec) ? fs::canonical(linkOrFile, ec) : fs::path();
    const std::string path = resolved.empty() ? linkOrFile : resolved.string();
    fs::path target(path);
    fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");

    // A file the user made read-only stays as it is, even though the folder
    // would let us rename over it.
    struct stat old {};
    bool hadFile = ::stat(path.c_str(), &old) == 0;
    if (hadFile && (S_ISDIR(old.st_mode) || ::access(path.c_str(), W_OK) != 0)) fail(EACCES);

    TemporaryFile temp((folder / ("." + target.filename().string() + ".XXXXXX")).string());
    if (!temp.opened()) fail(errno);

    const char *data = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        ssize_t n = ::write(temp.fd(), data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno);
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
    // The new file keeps the old one's permissions; a first file gets the usual ones.
    ::fchmod(temp.fd(), hadFile ? (old.st_mode & 07777) : 0644);
    if (::fsync(temp.fd()) != 0) fail(errno);
    if (!temp.close()) fail(errno);
    if (::rename(temp.name().c_str(), path.c_str()) != 0) fail(errno);
    temp.keep();

    // Make the rename itself durable; a failure here loses nothing.
    int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
}

}  // namespace saltmarrow
