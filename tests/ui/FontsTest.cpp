#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <ostream>

namespace tidewell::test {
namespace {

/// Other fonts, or the same drawn otherwise.
struct Fonts {
  std::string name;
  QString folders; // separated by colons
  QString hintStyle;
  std::string leftOut = {}; // tests that need fonts

  friend std::ostream& operator<<(std::ostream& stream, const Fonts& fonts) {
    return stream << fonts.name;
  }
};

// As every distribution has it.
QString alias(const char* generic, const char* family) {
  return QStringLiteral("<alias><family>%1</family><prefer><family>%2</family></prefer></alias>")
      .arg(QLatin1String(generic), QLatin1String(family));
}

QByteArray configuration(const Fonts& fonts, const QString& cache) {
  QString text = QStringLiteral("<?xml version=\"1.0\"?><fontconfig>") +
                 alias("sans-serif", "DejaVu Sans") + alias("monospace", "DejaVu Sans Mono");
  for (const QString& folder : fonts.folders.split(u':', Qt::SkipEmptyParts)) {
    text += QStringLiteral("<dir>%1</dir>").arg(folder);
  }
  text += QStringLiteral("<cachedir>%1</cachedir><match target=\"pattern\">"
                         "<edit name=\"hinting\" mode=\"assign\"><bool>true</bool></edit>"
                         "<edit name=\"hintstyle\" mode=\"assign\"><const>%2</const></edit>"
                         "</match></fontconfig>")
              .arg(cache, fonts.hintStyle);
  return text.toUtf8();
}

class FontsTest : public testing::TestWithParam<Fonts> {};

TEST_P(FontsTest, KeepWhatHoldsWithAnyFont) {
  const QTemporaryDir folder;
  QFile file(folder.filePath(QStringLiteral("fonts.conf")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(configuration(GetParam(), folder.path()));
  file.close();
  QProcess tests;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("TIDEWELL_TEST_FONTS"), file.fileName());
  environment.insert(QStringLiteral("TIDEWELL_TEST_FONTS_NAME"),
                     QString::fromStdString(GetParam().name));
  tests.setProcessEnvironment(environment);
  tests.setProcessChannelMode(QProcess::MergedChannels);
  tests.start(QCoreApplication::applicationFilePath(),
              {QStringLiteral("--gtest_also_run_disabled_tests"),
               QStringLiteral("--gtest_filter=WithAnyFontTest.*:OtherFontsTest.*-") +
                   QString::fromStdString(GetParam().leftOut)});
  ASSERT_TRUE(tests.waitForFinished(120'000));
  const QByteArray output = tests.readAll();
  EXPECT_EQ(tests.exitStatus(), QProcess::NormalExit) << output.toStdString();
  EXPECT_EQ(tests.exitCode(), 0) << output.toStdString();
}

std::string fontsName(const testing::TestParamInfo<Fonts>& fonts) { return fonts.param.name; }
INSTANTIATE_TEST_SUITE_P(Fonts, FontsTest,
                         testing::Values(Fonts{"fullyHinted", TIDEWELL_FONT_FOLDERS, "hintfull"},
                                         Fonts{"fallback", TIDEWELL_DEJAVU, "hintslight"},
                                         Fonts{"fallbackFullyHinted", TIDEWELL_DEJAVU, "hintfull"},
                                         Fonts{"absent", "", "hintnone", "*Weight*:OtherFonts*"}),
                         fontsName);

} // namespace
} // namespace tidewell::test
