// Writes the coverage images of the few characters that the panel's text needs as C++ source, so
// that the resident can draw text without a font library.

#include <array>
#include <cmath>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace {

struct Size {
  int advance;
  int capHeight;
};

struct Group {
  std::string_view name;
  int font; // index among the command line's fonts
  std::vector<Size> sizes;
};

// Narrow sets are condensed rather than small, because small text needs its height to be legible.
std::array<Group, 5> groupsToMake() {
  return {{
      {"twoLines22", 1, {{6, 8}, {5, 8}, {4, 8}, {3, 8}, {2, 6}}},
      {"oneLine22", 1, {{6, 11}, {5, 10}, {4, 9}, {3, 9}, {2, 6}}},
      {"twoLines44", 0, {{12, 16}, {10, 16}, {8, 16}, {6, 16}, {4, 12}}},
      {"oneLine44", 0, {{12, 22}, {10, 20}, {8, 18}, {6, 18}, {4, 12}}},
      {"wide", 0, {{16, 20}, {8, 16}}},
  }};
}

// The letter stands in for the zero, whose inner mark would fill up at small sizes.
constexpr std::u32string_view characters = U"O123456789.-KM\u2193\u2191";

void require(bool success, const std::string& what) {
  if (!success) {
    throw std::runtime_error(what);
  }
}

class Font {
public:
  explicit Font(const char* path) {
    require(FT_Init_FreeType(&m_library) == 0, "no FreeType");
    require(FT_New_Face(m_library, path, 0, &m_face) == 0, std::string("cannot read ") + path);
    measure();
  }
  Font(Font&&) = delete;
  ~Font() {
    FT_Done_Face(m_face);
    FT_Done_FreeType(m_library);
  }

  /// Scales the font to this advance and height of capitals, in pixels.
  void setSize(const Size& size) {
    const double em = m_face->units_per_EM;
    const auto points = [em](int pixels, double units) {
      return static_cast<FT_F26Dot6>(std::lround(pixels * em / units * 64.0));
    };
    require(FT_Set_Char_Size(m_face, points(size.advance, m_unitAdvance),
                             points(size.capHeight, m_unitHeight), 72, 72) == 0,
            "cannot scale the font");
  }

  /// Appends the image of one character to `images`.
  void draw(char32_t character, const Size& size, int margin, std::vector<unsigned>& images) {
    load(character, FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT);
    const auto* const glyph = m_face->glyph;
    const int rows = size.capHeight + 2 * margin;
    const int top = margin + size.capHeight - glyph->bitmap_top;
    for (int y = 0; y < rows; ++y) {
      for (int x = 0; x < size.advance; ++x) {
        images.push_back(coverage(glyph->bitmap, x - glyph->bitmap_left, y - top));
      }
    }
  }

private:
  void measure() {
    load('M', FT_LOAD_NO_SCALE);
    m_unitAdvance = static_cast<double>(m_face->glyph->metrics.horiAdvance);
    m_unitHeight = static_cast<double>(m_face->glyph->metrics.horiBearingY);
  }

  void load(char32_t character, FT_Int32 flags) {
    const FT_UInt index = FT_Get_Char_Index(m_face, character);
    require(index != 0, "the font lacks a character");
    require(FT_Load_Glyph(m_face, index, flags) == 0, "cannot load a glyph");
  }

  static unsigned coverage(const FT_Bitmap& bitmap, int x, int y) {
    if (x < 0 || y < 0 || x >= static_cast<int>(bitmap.width) ||
        y >= static_cast<int>(bitmap.rows)) {
      return 0;
    }
    return bitmap.buffer[y * bitmap.pitch + x];
  }

  FT_Library m_library = nullptr;
  FT_Face m_face = nullptr;
  double m_unitAdvance = 0;
  double m_unitHeight = 0;
};

void writeImages(std::ostream& out, const std::string& name, const std::vector<unsigned>& images) {
  out << "constexpr std::array<std::uint8_t, " << images.size() << "> " << name << " = {";
  for (std::size_t index = 0; index < images.size(); ++index) {
    out << (index % 24 == 0 ? "\n    " : "") << images[index] << ',';
  }
  out << "};\n";
}

void writeGroup(std::ostream& out, const Group& group, Font& font) {
  std::string sets;
  for (const Size& size : group.sizes) {
    const int margin = size.capHeight / 8 + 1;
    std::vector<unsigned> images;
    font.setSize(size);
    for (const char32_t character : characters) {
      font.draw(character, size, margin, images);
    }
    const std::string name = std::string(group.name) + "Images" + std::to_string(size.advance);
    writeImages(out, name, images);
    sets += "    {" + std::to_string(size.advance) + ", " + std::to_string(size.capHeight) + ", " +
            std::to_string(margin) + ", " + name + "},\n";
  }
  out << "constexpr std::array<GlyphSet, " << group.sizes.size() << "> " << group.name
      << "Sets = {{\n"
      << sets << "}};\n\n";
}

void write(std::ostream& out, char** fontPaths) {
  Font medium(fontPaths[0]);
  Font bold(fontPaths[1]);
  const std::array<Font*, 2> fonts = {&medium, &bold};
  out << "#include \"tile/Glyphs.h\"\n\n#include <array>\n\nnamespace tidewell {\n\nnamespace "
         "{\n\n";
  for (const Group& group : groupsToMake()) {
    writeGroup(out, group, *fonts.at(static_cast<std::size_t>(group.font)));
  }
  out << "} // namespace\n\nconst GlyphSets glyphSets = {\n    ";
  for (const Group& group : groupsToMake()) {
    out << group.name << "Sets, ";
  }
  out << "\n};\n\n} // namespace tidewell\n";
}

} // namespace

int main(int count, char** arguments) {
  if (count != 4) {
    std::cerr << "usage: makeGlyphs OUTPUT MEDIUM.ttf BOLD.ttf\n";
    return 2;
  }
  try {
    std::ofstream out(arguments[1]);
    write(out, arguments + 2);
    require(out.flush().good(), "cannot write the output");
  } catch (const std::exception& error) {
    std::cerr << "makeGlyphs: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
