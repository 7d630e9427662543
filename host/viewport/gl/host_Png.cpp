#include "host_Renderer.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void Raise(const std::filesystem::path& path, int cause) {
    throw std::filesystem::filesystem_error("cannot write the picture", path,
                                            std::error_code(cause, std::generic_category()));
}

/// A new file beside another, which takes the other's place when it is complete.
class NewFile {
public:
    explicit NewFile(std::filesystem::path path) : _path(std::move(path)) {
        struct stat status {};
        if (::stat(_path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
            Raise(_path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);  // a device would be replaced
        }
        std::error_code none;
        _target = std::filesystem::weakly_canonical(_path, none);
        if (none) {
            _target = _path;
        }
        for (int i = 0; _file < 0; ++i) {
            _temporary = _target.parent_path() /
                         (".picture-" + std::to_string(::getpid()) + "-" + std::to_string(i));
            _file = ::open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (_file < 0 && errno != EEXIST) {
                Raise(_path, errno);
            }
        }
    }
    ~NewFile() {
        if (_file >= 0) {
            ::close(_file);
        }
        if (!_isDone) {
            ::unlink(_temporary.c_str());
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    [[nodiscard]] int Descriptor() const noexcept { return _file; }

    void Finish() {
        if (::close(std::exchange(_file, -1)) != 0 ||
            ::rename(_temporary.c_str(), _target.c_str()) != 0) {
            Raise(_path, errno);
        }
        _isDone = true;
    }

private:
    std::filesystem::path _path;
    std::filesystem::path _target;  // behind symbolic links
    std::filesystem::path _temporary;
    int _file = -1;
    bool _isDone = false;
};

/// What libpng's callbacks see. An error jumps back over libpng's frames and ours, so nothing here
/// or in Encode() has a destructor.
struct Job {
    const host_Image* image;
    int file;
    int cause;  // of a failure, an errno
};

void Write(png_structp png, png_bytep bytes, std::size_t count) {
    Job& job = *static_cast<Job*>(png_get_io_ptr(png));
    while (count > 0) {
        const ssize_t written = ::write(job.file, bytes, count);
        if (written >= 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        } else if (errno != EINTR) {
            job.cause = errno;
            png_error(png, "write");
        }
    }
}

void Flush(png_structp) {}

[[noreturn]] void Fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }

void Ignore(png_structp, png_const_charp) {}

bool Encode(Job& job) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, &Ignore);
    png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
    if (info == nullptr) {
        job.cause = ENOMEM;
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &job, &Write, &Flush);
    // Small and fast enough for pictures that are mostly flat.
    png_set_compression_level(png, 3);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_buffer_size(png, 1U << 16U);
    png_set_IHDR(png, info, static_cast<png_uint_32>(job.image->width),
                 static_cast<png_uint_32>(job.image->height), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int row = 0; row < job.image->height; ++row) {
        png_write_row(png, job.image->Pixel(0, row));
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

void host_WritePng(const host_Image& image, const std::string& path) {
    if (image.width < 1 || image.height < 1 ||
        image.rgb.size() !=
            3 * static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height)) {
        Raise(path, EINVAL);
    }
    NewFile file(path);
    Job job{&image, file.Descriptor(), EINVAL};  // EINVAL: sizes that libpng refuses
    if (!Encode(job)) {
        Raise(path, job.cause);
    }
    file.Finish();
}
