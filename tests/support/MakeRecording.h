#pragma once
// Recordings for the tests, written in-process by the generator behind `zebtool gen`
// (link zeb_gen). Options by name: MakeRecording(path, {.channels = 2, .records = 500}).

#include "RecordingGenerator.h"

#include <QtGlobal>

// `zebtool gen --gaps`: now and then a gap marker.
constexpr double kSomeGaps = 0.0005;

// `zebtool gen --values N`: records enough for N values over the channels.
constexpr std::int64_t RecordsFor(std::int64_t values, int channels) {
    return (values + channels - 1) / channels;
}

// Writes the recording; a failure is reported with its reason.
inline bool MakeRecording(const QString& path, const TGenOptions& options = {}) {
    QString error;
    if (WriteRecording(path, options, &error)) return true;
    qWarning("cannot write %s: %s", qPrintable(path), qPrintable(error));
    return false;
}
