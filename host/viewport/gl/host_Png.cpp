#include "host_Progress.h"
#include "host_Renderer.h"
#include "idb_FileErrorException.h"
#include "idb_FileSave.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>

namespace {

[[noreturn]] void Raise(const std::filesystem::path& path, int cause) {
    throw std::filesystem::filesystem_error("cannot write the picture", path,
                                            std::error_code(cause, std::generic_category()));
}

/// What libpng's callbacks see. An error jumps back over libpng's frames and ours, so nothing here
/// or in Encode() has a destructor.
struct Job {
    const host_Image* image;
    std::vector<std::byte>* bytes;
    int cause;  // of a failure, an errno
    host_Progress* progress;
    std::exception_ptr* interrupt;  // what ended the work instead
};

/// Counts a row that is written; false when the user has interrupted the work.
bool GoesOn(Job& job) noexcept {
    try {
        job.progress->Count();
        job.progress->Look();
        return true;
    } catch (...) {
        *job.interrupt = std::current_exception();
        return false;
    }
}

void Write(png_structp png, png_bytep bytes, std::size_t count) {
    Job& job = *static_cast<Job*>(png_get_io_ptr(png));
    try {
        const auto* first = reinterpret_cast<const std::byte*>(bytes);
        job.bytes->insert(job.bytes->end(), first, first + count);
        return;
    } catch (const std::bad_alloc&) {
        job.cause = ENOMEM;
    }
    png_error(png, "write");
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
        if (!GoesOn(job)) {
            png_destroy_write_struct(&png, &info);
            return false;
        }
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
    std::vector<std::byte> bytes;
    host_Progress progress("Writing the picture",
                           host_Work{static_cast<std::size_t>(image.height)});
    progress.Look();
    std::exception_ptr interrupt;
    Job job{&image, &bytes, EINVAL, &progress, &interrupt};  // EINVAL: sizes that libpng refuses
    if (!Encode(job)) {
        if (interrupt) {
            std::rethrow_exception(interrupt);
        }
        Raise(path, job.cause);
    }
    try {
        idb_FileSave(path, bytes);
    } catch (const idb_FileErrorException& error) {
        Raise(path, error.Cause() != 0 ? error.Cause() : EINVAL);  // 0: a pipe or a device
    }
}
