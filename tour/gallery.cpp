#include "tour/gallery.h"

#include <QFileInfo>
#include <QSaveFile>

namespace {
constexpr char kHead[] =
    "<!doctype html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width\">\n<link rel=\"icon\" href=\"data:,\">\n<title>Dash camera: "
    "the tour</title>\n"
    "<style>body{font:15px/1.4 sans-serif;margin:24px;background:#262223;color:#fff}a{color:#40c8e0}"
    "figure{display:inline-block;vertical-align:top;margin:0 16px 20px 0}"
    "img{max-width:100%;height:auto;margin-right:8px}figcaption{color:#c8c2c4}b{color:#fff}nav "
    "a{margin-right:12px}</style>\n"
    "<h1>Dash camera: the tour</h1>\n";
}

void Gallery::Section(const QString& title) {
  mContents += QStringLiteral("<a href=\"#%1\">%1</a>\n").arg(title.toHtmlEscaped());
  mPage += QStringLiteral("<h2 id=\"%1\">%1</h2>\n").arg(title.toHtmlEscaped());
}

bool Gallery::Picture(const QString& name, const QImage& picture) {
  const QFileInfo file(mFolder.filePath(name + QStringLiteral(".png")));
  ++mCount;
  return file.dir().mkpath(QStringLiteral(".")) && picture.save(file.filePath());
}

void Gallery::Row(const QString& title, const QString& shows, const QStringList& names) {
  mPage += QStringLiteral("<figure>");
  for (const QString& name : names)
    mPage += QStringLiteral("<img src=\"%1.png\" width=\"480\" height=\"320\" alt=\"\" loading=\"lazy\">").arg(name);
  mPage += QStringLiteral("<figcaption><b>%1</b> %2</figcaption></figure>\n").arg(title, shows.toHtmlEscaped());
}

bool Gallery::WritePage() {
  QSaveFile page(Page());
  if (!page.open(QIODevice::WriteOnly)) return false;
  page.write(kHead);
  page.write(QStringLiteral("<nav>%1</nav>\n%2</html>\n").arg(mContents, mPage).toUtf8());
  return page.commit();
}
