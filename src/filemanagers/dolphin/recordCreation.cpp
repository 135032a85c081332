// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/recordCreation.h"

#include <KIO/FileUndoManager>
#include <KIO/Job>
#include <QFileInfo>
#include <QUrl>

namespace sprig::filemanagers {

namespace {

/// A job with nothing left to do: the undo manager remembers what a job has done when the job ends well.
class FinishedJob : public KIO::Job {
 public:
  void finish() { emitResult(); }
};

}  // namespace

bool recordCreation(const QUrl& file) {
  if (!QFileInfo(file.toLocalFile()).isFile()) return false;
  auto* job = new FinishedJob;  // It deletes itself.
  KIO::FileUndoManager::self()->recordJob(KIO::FileUndoManager::Put, {}, file, job);
  job->finish();
  return true;
}

}  // namespace sprig::filemanagers
