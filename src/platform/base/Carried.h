#pragma once

#include <cstddef>
#include <iterator>
#include <unordered_map>
#include <utility>
#include <vector>

/// What was worked out for each element of a list that is read over and over, carried from one reading to the next. An
/// element that stands where it stood costs a comparison of keys; only where the order has changed is one looked for.
template <class Key, class Result>
class Carried {
public:
    using Entry = std::pair<Key, Result>;

    /// Begins a reading.
    void begin()
    {
        before_.clear();
        index_.clear();
        place_ = 0;
        isAsBefore_ = true;
        hasSkipped_ = false;
    }

    /// The next element's; with it whether it was there at the reading before, else its result is a fresh one. Valid
    /// until the next call.
    std::pair<Result&, bool> next(const Key& key)
    {
        if (isAsBefore_ && place_ < now_.size() && now_[place_].first == key)
            return { now_[place_++].second, true };
        if (isAsBefore_ && place_ < now_.size())
            part();
        const std::size_t found = isAsBefore_ ? before_.size() : find(key);
        const bool isKnown = found < before_.size();
        if (isKnown) {
            now_.push_back(std::move(before_[found]));
            before_[found].first = Key {};
            hasSkipped_ |= found != place_;
            place_ = found + 1;
        } else {
            now_.emplace_back(key, Result {});
            place_ += isAsBefore_;
        }
        return { now_.back().second, isKnown };
    }

    /// Ends the reading, with what there was of elements that it hasn't met, among others whose keys are empty.
    std::vector<Entry> end()
    {
        if (isAsBefore_)
            part();
        return std::exchange(before_, {});
    }

    const std::vector<Entry>& entries() const { return now_; }

private:
    /// So far ahead is looked before an index is made: a few elements have gone.
    static constexpr std::size_t nearby = 16;

    /// From here on the order may be another: what was there stands apart, to be looked for.
    void part()
    {
        const auto first = now_.begin() + static_cast<std::ptrdiff_t>(place_);
        before_.assign(std::make_move_iterator(first), std::make_move_iterator(now_.end()));
        now_.erase(first, now_.end());
        place_ = 0;
        isAsBefore_ = false;
    }

    std::size_t find(const Key& key)
    {
        for (std::size_t i = place_; i < before_.size() && i < place_ + nearby; ++i) {
            if (before_[i].first == key)
                return i;
        }
        if (place_ + nearby >= before_.size() && !hasSkipped_)
            return before_.size();
        if (index_.empty()) {
            for (std::size_t i = 0; i < before_.size(); ++i)
                index_.emplace(before_[i].first, i);
        }
        const auto found = index_.find(key);
        return found == index_.end() || before_[found->second].first != key ? before_.size() : found->second;
    }

    std::vector<Entry> now_;
    /// While all elements have been as before, those are in `now_` still, and `place_` is there, else in `before_`.
    bool isAsBefore_ = true;
    std::vector<Entry> before_;
    std::unordered_map<Key, std::size_t> index_;
    std::size_t place_ = 0;
    bool hasSkipped_ = false;
};
