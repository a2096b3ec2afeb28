// Where the shipped examples are: installed beside the host (share/kestrone/examples), or, for a
// host run from its build tree, in the source tree it was built from.
#pragma once

#include <QString>
#include <QStringList>

namespace window {

// The folder, or empty when neither is there.
QString examples_folder();
// Its files matching `pattern` ("*.kflow", or "lessons/*.klesson" in a subfolder), sorted by
// name, as whole paths.
QStringList example_files(const QString& folder, const QString& pattern);

}  // namespace window
