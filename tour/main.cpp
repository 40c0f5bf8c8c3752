// dashcam-tour: a picture of every screen, in every state that looks different, and of every message box, as a person
// sees them on the camera, in every language, and a page that shows them all. No display, no recorder, no bench.
#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <algorithm>
#include <map>

#include "gui/app/commandline.h"
#include "gui/base/language.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tour/camera.h"
#include "tour/gallery.h"
#include "tour/inspection.h"
#include "tour/references.h"
#include "tour/states.h"
#include "tour/stretched.h"

namespace {
/// One picture of the tour.
struct Shot {
  QString section, name, shows;
  QImage drawn, seen;
};

Shot ShotOf(Camera& camera, const QString& section, const QString& name, const char* shows) {
  Shot shot{section, name, QString::fromUtf8(shows), camera.Drawn(), {}};
  shot.seen = camera.Seen(shot.drawn);
  return shot;
}

// The values that give a message another text.
QList<int> ValuesOf(int id) {
  switch (id) {
    case LED_FILE_UPDATE_SAVE:
    case LED_FILE_UPDATE_DELETE:
      return {12};
    case R_HW_ERROR:
      return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 255};
    case R_VOLT_SET:
      return {0, 1};
    case R_SD_ERROR_NEET_FORMAT:
      return {0, 5, 7};
    default:
      return {0};
  }
}

/// Walks through everything once and hands each picture to `take`, in an order of its own.
class Tour {
public:
  explicit Tour(Inspection& inspection) : mInspection(inspection) {}

  template <typename Take>
  void Screens(bool backwards, Take take) {
    std::vector<State> states = States();
    if (backwards) std::reverse(states.begin(), states.end());
    for (const State& state : states) {
      Camera camera;
      state.enter(camera);
      const char* screen = NameOf(gWidgetManager.GetCurWidgetId());
      if (gWidgetManager.GetCurWidgetId() != state.screen)
        mInspection.Fail(
            QStringLiteral("%1: the camera shows %2").arg(QLatin1String(state.name), QLatin1String(screen)));
      Shot shot = ShotOf(camera, QLatin1String(NameOf(state.screen)), QLatin1String(state.name), state.shows);
      mInspection.Look(camera.Window(), shot.name, shot.drawn);
      if (camera.Flashes() > 0) mInspection.Fail(shot.name + QStringLiteral(": the page flashes between two boxes"));
      take(std::move(shot));
    }
  }

  template <typename Take>
  void Boxes(Take take) {
    Camera camera;
    for (int id = 0; id <= INITIALIZE_RESET_FPS_NEED_FORMAT; ++id) {
      const QList<int> values = ValuesOf(id);
      for (const int value : values) {
        int kind, icon, lines, align, px;
        if (GetMessageBoxString(id, &kind, &icon, &lines, &align, &px, value).isEmpty()) continue;
        gWidgetManager.GetCurrentWidget()->PaintMessageBox(id, false, value, 0);
        QString name = QStringLiteral("box-%1").arg(id, 3, 10, QLatin1Char('0'));
        if (values.size() > 1) name += QStringLiteral("-%1").arg(value);
        Shot shot = ShotOf(camera, QStringLiteral("Message boxes"), name, NameOf(MessageBox_Id(id)));
        mInspection.Look(camera.Window(), shot.name, shot.drawn);
        take(std::move(shot));
        gWidgetManager.GetCurrentWidget()->DelMessageBox();
      }
    }
  }

private:
  Inspection& mInspection;
};

// The pictures of each language, all in the same order, Korean first.
using Tours = std::vector<std::vector<Shot>>;

bool WriteGallery(const Tours& tours, Gallery& gallery) {
  if (!gallery.Make()) return false;
  QString section;
  for (size_t i = 0; i < tours[0].size(); ++i) {
    const Shot& shot = tours[0][i];
    if (shot.section != section) gallery.Section(section = shot.section);
    QStringList names;
    for (const std::vector<Shot>& shots : tours) {
      names << shots[i].name;
      if (!gallery.Picture(shots[i].name, shots[i].seen)) return false;
    }
    gallery.Row(shot.name, shot.shows, names);
  }
  return gallery.WritePage();
}

/// Everything twice, the second time in the opposite order: nothing may depend on what was shown before.
std::vector<Shot> TakeKoreanShots(Inspection& inspection) {
  std::vector<Shot> shots;
  std::map<QString, QImage> first;
  Tour tour(inspection);
  const auto keep = [&](Shot shot) {
    first[shot.name] = shot.drawn;
    shots.push_back(std::move(shot));
  };
  const auto compare = [&](const Shot& shot) {
    if (first[shot.name] != shot.drawn)
      inspection.Fail(shot.name + QStringLiteral(": it looks different the second time"));
  };
  tour.Screens(false, keep);
  tour.Boxes(keep);
  tour.Screens(true, compare);
  return shots;
}

// Everything once. The names begin with the language, but for Korean ones.
std::vector<Shot> TakeShots(Inspection& inspection, bool tells) {
  std::vector<Shot> shots;
  Tour tour(inspection);
  const auto keep = [&](Shot shot) {
    if (!IsSourceLanguage()) shot.name.prepend(Language() + u'/');
    if (tells) QTextStream(stdout) << "picture " << shot.name << Qt::endl;
    shots.push_back(std::move(shot));
  };
  tour.Screens(false, keep);
  tour.Boxes(keep);
  return shots;
}

// `alone`: for the pictures' sake, without a look at what may be wrong with them.
Tours TakeTours(bool alone, QStringList* faults) {
  Tours tours;
  const QStringList languages = Languages();
  for (const QString& language : languages) {
    Inspection inspection;
    if (!ChooseLanguage(language)) qFatal("%s cannot be chosen", qPrintable(language));
    tours.push_back(IsSourceLanguage() && !alone ? TakeKoreanShots(inspection) : TakeShots(inspection, alone));
    if (alone) continue;
    inspection.LookAtTable();
    *faults += inspection.Faults();
  }
  return tours;
}

// Texts a third longer than English ones still fit.
void LookAtStretchedTexts(QStringList* faults) {
  if (!ChooseLanguage(QStringLiteral("en"))) return;
  Stretched stretched;
  QCoreApplication::installTranslator(&stretched);
  Inspection inspection;
  Tour tour(inspection);
  const auto forget = [](const Shot&) {};
  tour.Screens(false, forget);
  tour.Boxes(forget);
  for (const QString& fault : inspection.Faults()) *faults << QStringLiteral("stretched ") + fault;
}

/// Those whose look is known: of another language only what does not look as in Korean.
std::vector<const Shot*> Different(const Tours& tours) {
  std::vector<const Shot*> different;
  for (const std::vector<Shot>& shots : tours)
    for (size_t i = 0; i < shots.size(); ++i)
      if (&shots == &tours[0] || shots[i].drawn != tours[0][i].drawn) different.push_back(&shots[i]);
  return different;
}

bool Accept(const std::vector<const Shot*>& shots, const QString& known) {
  References references(known);
  for (const Shot* shot : shots)
    if (!references.Accept(shot->name, shot->drawn)) return false;
  references.RemoveOthers();
  return true;
}

// One sentence for each fault; the pictures that differ are shown on a page.
QStringList Compare(const std::vector<const Shot*>& shots, const QString& known, const QString& page) {
  References references(known);
  for (const Shot* shot : shots) references.Compare(shot->name, shot->drawn);
  if (const QStringList near = references.Near(); !near.isEmpty())
    QTextStream(stdout) << "One level off in a few pixels: " << near.join(QStringLiteral(", ")) << "\n";
  QStringList differences = references.Differences();
  if (differences.isEmpty()) return {};
  if (!references.WritePage(page)) differences << QStringLiteral("%1 cannot be written").arg(page);
  return differences << QStringLiteral("See file://%1; take the new ones with ./test --accept.").arg(page);
}
}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareQt();
  QApplication application(argc, argv);
  const QString known = QStringLiteral("KNOWN");
  const QCommandLineOption accept(QStringLiteral("accept"), QStringLiteral("Makes them the known ones."), known);
  const QCommandLineOption compare(QStringLiteral("compare"), QStringLiteral("Fails unless they are as known."), known);
  QCoreApplication::setApplicationVersion(QStringLiteral(DASHCAM_VERSION));
  QCommandLineParser options;
  options.setApplicationDescription(
      QStringLiteral("Writes a picture of every screen and message box into DIR. KNOWN is a folder of pictures."));
  options.addHelpOption();
  options.addVersionOption();
  const QCommandLineOption pictures(QStringLiteral("pictures"),
                                    QStringLiteral("Nothing but the pictures; tells each."));
  options.addOptions({accept, compare, pictures});
  options.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("Made if need be."));
  options.process(application);
  if (options.positionalArguments().size() != 1) options.showHelp(2);
  const QString folder = options.positionalArguments().constFirst();

  QStringList faults;
  gEnvirnmentSettings.SettingTouchValue(true);
  GetConfig();
  ApplyFont();
  const Tours tours = TakeTours(options.isSet(pictures), &faults);
  if (!options.isSet(pictures)) LookAtStretchedTexts(&faults);
  const std::vector<const Shot*> shots = Different(tours);

  QTextStream out(stdout), error(stderr);
  Gallery gallery(folder);
  if (!WriteGallery(tours, gallery)) {
    error << "Cannot write into " << folder << ".\n";
    return 1;
  }
  out << gallery.Count() << " pictures: " << gallery.Page() << "\n";
  if (options.isSet(accept) && !Accept(shots, options.value(accept)))
    faults << QStringLiteral("Cannot write into %1.").arg(options.value(accept));
  if (options.isSet(compare))
    faults += Compare(shots, options.value(compare), gallery.Page(QStringLiteral("differences.html")));
  for (const QString& fault : std::as_const(faults)) error << fault << "\n";
  return faults.isEmpty() ? 0 : 1;
}
