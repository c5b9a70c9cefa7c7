#include "platform/pictures/pictures_module.h"

#include <QGuiApplication>

#include "platform/pictures/qt_images.h"

extern "C" Q_DECL_EXPORT const tallowin::PicturesModule* tallowinPicturesModule() {
  static constexpr tallowin::PicturesModule module = {[]() -> tallowin::Images* { return new tallowin::QtImages; },
                                                      [](int& argc, char** argv) -> QCoreApplication* {
                                                        qputenv("QT_QPA_PLATFORM", "offscreen");
                                                        return new QGuiApplication(argc, argv);
                                                      }};
  return &module;
}
