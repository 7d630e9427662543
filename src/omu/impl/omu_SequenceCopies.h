#pragma once

#include "nex_TextException.h"
#include "omu_PrimSequence.h"

#include <algorithm>
#include <memory>

/// Slice, Repeat and Concat of tuples and of lists, which differ in what they return.
///
/// Result is omu_PrimTuple or omu_PrimList and befriends this class.
template <class Result>
struct omu_SequenceCopies {
    static Result* Slice(const omu_PrimSequence& from, int begin, int end) {
        const int length = from.Length();
        if (end > length) {
            end = length;
        }
        if (end < 0) {
            end += length;
        }
        if (begin < 0) {
            begin += length;
        }
        auto result = Empty();
        result->AppendCopies(from, begin, end, 950);
        return result.release();
    }

    static Result* Repeat(const omu_PrimSequence& from, int count) {
        auto result = Empty();
        for (int i = 0; i < count; ++i) {
            result->AppendCopies(from, 0, from.Length(), 969);
        }
        return result.release();
    }

    static Result* Concat(const omu_PrimSequence& first, const omu_PrimSequence* second) {
        if (second == nullptr) {
            nex_TextException("there is no sequence to append")
                .Throw("generated/omu/impl/omu_SequenceCopies", __LINE__);
        }
        auto result = Empty();
        result->AppendCopies(first, 0, first.Length(), 988);
        result->AppendCopies(*second, 0, second->Length(), 988);
        return result.release();
    }

private:
    static std::unique_ptr<Result> Empty() {
        return std::make_unique<Result>(0, omu_PrimSequence::kCode);
    }
};
