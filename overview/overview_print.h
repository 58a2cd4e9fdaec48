#pragma once

#include "base/app_context.h"
#include "base/result.h"

#include <QImage>
#include <QString>

#include <filesystem>

class QWidget;

namespace mact {

/// The overview's page on paper and as PDF. `html` is an OverviewPage, in which `chart` takes its place as
/// wide as the sheet; without a picture the place is left out. Each sheet has the page's title and its number
/// at the foot.

/// Shows the sheets as they will be printed; they are printed from there.
void PreviewOverview(AppContext& app, const QString& html, const QImage& chart, QWidget* parent);

/// Writes the file whole or not at all. A file in the data folder is a Failure.
Done WriteOverviewPdf(const AppContext& app, const std::filesystem::path& path, const QString& html,
                      const QImage& chart);
} // namespace mact
