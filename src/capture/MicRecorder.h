// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <filesystem>
#include <memory>
#include <optional>

#include "base/WaitClock.h"
#include "capture/LiveSoundSource.h"

namespace tessaloom {

/// Records a microphone into "audio.m4a". It listens from the moment it is made, so that the device is warm,
/// but writes nothing before it is armed with the recording's time zero. The file begins with the first
/// sample after that, and the device's clock and its gaps are made up for, so that from there on file time is
/// host time. Serves one recording. Main thread, except where told.
class MicRecorder {
  public:
    /// Any file at `file` is replaced by an empty one, which the first sample begins; without any it is
    /// removed at the end. Throws MediaError when it can't be made.
    static std::unique_ptr<MicRecorder> start(std::unique_ptr<LiveSoundSource> source,
                                              const std::filesystem::path& file);
    /// Without stop() the file stays as it then is.
    ~MicRecorder();

    /// From now on, samples at or after `origin` (HostClock seconds) are recorded.
    void arm(double origin);

    /// HostClock seconds of the file's first sample; nothing as long as there is none. Any thread.
    std::optional<double> firstSamplePTS() const;

    /// Ends the source and completes the file, waiting 10 s of `clock` at most.
    QCoro::Task<> stop(WaitClock& clock = WaitClock::host());

  private:
    struct Recording;

    explicit MicRecorder(std::shared_ptr<Recording> recording);

    std::shared_ptr<Recording> recording_;
};

}  // namespace tessaloom
