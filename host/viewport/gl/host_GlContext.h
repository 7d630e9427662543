#pragma once

#include <thread>

/// An OpenGL 3.3 core context without a window, by EGL on Mesa's surfaceless platform.
///
/// Kept to the end of the process: the driver is never unloaded. It belongs to the thread that made
/// it. Do not fork once it exists.
class host_GlContext {
public:
    /// Raises std::runtime_error, which names the missing package, where no context can be had.
    host_GlContext();
    host_GlContext(const host_GlContext&) = delete;
    host_GlContext& operator=(const host_GlContext&) = delete;

    /// Makes the context current. Raises std::runtime_error in any thread but its own.
    void Enter() const;

private:
    void* _display = nullptr;
    void* _context = nullptr;
    std::thread::id _thread = std::this_thread::get_id();
};
