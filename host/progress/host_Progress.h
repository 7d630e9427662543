#pragma once

#include <cstddef>
#include <string_view>

/// Work whose items mean nothing to the user: only what share of it is done is told.
struct host_Work {
    std::size_t total;
};

/// What long work tells the user, and how it lets him interrupt it.
///
///     host_Progress progress("Judging cells", cells.size());
///     for (const int cell : cells) {
///         values.push_back(mesh.Quality(cell, measure));
///         progress.Count();
///     }
///
/// Counting is nearly free: the clock is looked at every few milliseconds, by items that adapt to
/// their speed. Progress goes to the calling thread's front (wip_WIP) up to ten times a second, and
/// what its reporter raises when the user has interrupted the command comes out of Count. In a
/// thread without a reporter nothing happens. One thread at a time; short work never reports.
class host_Progress {
public:
    /// Seconds since some moment, as a clock gives them that is never set back.
    using Clock = double (*)();
    [[nodiscard]] static double Now();

    /// \p name is kept, not copied. \p total: number of items, 0 where it is not known.
    explicit host_Progress(const char* name, std::size_t total = 0, Clock clock = &Now) noexcept
        : _name(name), _total(total), _clock(clock) {}
    host_Progress(const char* name, host_Work work) noexcept : host_Progress(name, work.total) {
        _isShare = true;
    }
    /// Tells that the work is done, or, when an exception ends it, that it will not be.
    ~host_Progress();
    host_Progress(const host_Progress&) = delete;
    host_Progress& operator=(const host_Progress&) = delete;

    /// Counts items that are done.
    void Count(std::size_t items = 1) {
        _done += items;
        if (_done >= _next) {
            Look();
        }
    }
    /// Lets an interrupt through and reports, if it is time. For items of very different speed or
    /// that take long: before the first, and after each.
    void Look();
    /// Tells that the work will not be done.
    void GiveUp() noexcept { _isGivenUp = true; }

private:
    void Report(int done, int total) const;
    [[nodiscard]] int Scaled(std::size_t count) const noexcept;

    const char* _name;
    std::size_t _total;
    Clock _clock;
    std::size_t _done = 0;
    std::size_t _next = 64;  // when to look at the clock: short work never does
    std::size_t _lookedAt = 0;
    double _looked = 0;  // when that was
    double _polled = 0;
    double _reported = 0;
    int _unwinding = 0;  // exceptions on their way at the first look
    bool _isShare = false;
    bool _hasLooked = false;
    bool _hasReported = false;
    bool _isGivenUp = false;
};

/// Lets an interrupt through where there is nothing to count: raises what the calling thread's
/// reporter raises; does nothing without one. To be called every 20 ms or so.
void host_Poll();

/// Prints on standard output, by way of the calling thread's reporter if there is one, so that a
/// progress bar is not in the way.
void host_Print(std::string_view text);
