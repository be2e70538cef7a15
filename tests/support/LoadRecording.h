#pragma once
// A recording loaded into a store through the loader thread, as the viewer loads it, with every
// large-file question answered "go on".

#include "store/DataBase.h"
#include "store/FileThread.h"

#include <QEventLoop>
#include <QTimer>

#include <memory>

inline std::unique_ptr<TDataBase> LoadRecording(const QString& path, int* result = nullptr) {
    auto db = std::make_unique<TDataBase>();
    db->AddFile(path);
    QEventLoop loop;
    int last = 0;
    TFileThread thread(
        db.get(), path,
        [&](TLoadReport report, const QString&) {
            if (int(report) < 0) {
                last = int(report);
                loop.quit();
            }
        },
        [](TBigDataAnswer& answer) { answer = TBigDataAnswer::Continue; });
    QTimer::singleShot(120000, &loop, &QEventLoop::quit);
    loop.exec();
    thread.wait();
    if (result) *result = last;
    return db;
}
