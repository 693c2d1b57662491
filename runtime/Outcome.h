#pragma once

namespace kestrin::runtime {

/// What became of the changes that an operation made. The operation does not fail by it: whatever follows
/// from a change that could not be kept has followed all the same.
struct Outcome {
    /// The settings are what they were to become.
    bool settingsSaved = true;
    /// So are the user defaults.
    bool defaultsSaved = true;
    /// The changes are in the activity log.
    bool changesRecorded = true;

    /// Of several operations.
    Outcome &operator&=(const Outcome &other) {
        settingsSaved = settingsSaved && other.settingsSaved;
        defaultsSaved = defaultsSaved && other.defaultsSaved;
        changesRecorded = changesRecorded && other.changesRecorded;
        return *this;
    }
};

} // namespace kestrin::runtime
