#include "tour/gallery.h"

#include <QSaveFile>

namespace {
constexpr char kHead[] =
    "<!doctype html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width\">\n<title>Dash camera: the tour</title>\n"
    "<style>body{font:15px/1.4 sans-serif;margin:24px;background:#262223;color:#fff}a{color:#40c8e0}"
    "figure{display:inline-block;vertical-align:top;margin:0 16px 20px 0;width:480px;max-width:100%}"
    "img{max-width:100%;height:auto;display:block}figcaption{color:#c8c2c4}b{color:#fff}nav "
    "a{margin-right:12px}</style>\n"
    "<h1>Dash camera: the tour</h1>\n";
}

void Gallery::Section(const QString& title) {
  mContents += QStringLiteral("<a href=\"#%1\">%1</a>\n").arg(title.toHtmlEscaped());
  mPage += QStringLiteral("<h2 id=\"%1\">%1</h2>\n").arg(title.toHtmlEscaped());
}

bool Gallery::Add(const QString& name, const QString& shows, const QImage& picture) {
  const QString file = name + QStringLiteral(".png");
  mPage += QStringLiteral(
               "<figure><img src=\"%1\" width=\"480\" height=\"320\" alt=\"\" loading=\"lazy\">"
               "<figcaption><b>%2</b> %3</figcaption></figure>\n")
               .arg(file, name, shows.toHtmlEscaped());
  ++mCount;
  return picture.save(mFolder.filePath(file));
}

bool Gallery::WritePage() {
  QSaveFile page(Page());
  if (!page.open(QIODevice::WriteOnly)) return false;
  page.write(kHead);
  page.write(QStringLiteral("<nav>%1</nav>\n%2</html>\n").arg(mContents, mPage).toUtf8());
  return page.commit();
}
