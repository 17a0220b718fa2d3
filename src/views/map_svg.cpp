#include "views/map_svg.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text.h"

namespace hl {

namespace {

// Parts of the height of a line.
constexpr double kFontSize = 0.72, kBaseline = 0.76, kSquare = 0.7;
// About how wide a letter is, as a part of its font's size: a name that is too long is shortened by it.
constexpr double kLetter = 0.56;

std::string colourText(std::uint32_t colour) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text = "#";
    for (int shift = 20; shift >= 0; shift -= 4) text += kDigits[colour >> shift & 0xf];
    return text;
}

// Whatever the user's locale is, an SVG has points.
std::string number(double value) {
    std::array<char, 32> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 2).ptr;
    std::string text(digits.data(), end);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        if (c == '<') {
            safe += "&lt;";
        } else if (c == '&') {
            safe += "&amp;";
        } else {
            safe += c;
        }
    }
    return safe;
}

std::string shortened(const std::string& name, double most) {
    if (static_cast<double>(characterCount(name)) <= most) return name;
    return std::string(firstCharacters(name, static_cast<std::size_t>(std::max(most - 1, 0.0)))) + "…";
}

class Svg {
  public:
    explicit Svg(const MapDrawing& drawing)
        : drawing_(drawing), line_(drawing.lineHeight), font_(kFontSize * drawing.lineHeight) {}

    std::string text() {
        const bool hasLegend = !drawing_.overlay.legend.empty();
        const std::string width = number(drawing_.width),
                          height = number(drawing_.height + (hasLegend ? line_ : 0));
        out_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
               "\" viewBox=\"0 0 " + width + " " + height + "\" font-family=\"sans-serif\" font-size=\"" +
               number(font_) + "\">\n";
        addGradients();
        for (std::size_t i = 0; i < drawing_.tiles.size(); ++i)
            if (drawing_.tiles[i].next == i + 1) addTile(drawing_.tiles[i]);
        for (const MapName& name : drawing_.overlay.names) addName(name);
        if (hasLegend) addLegend();
        return out_ + "</svg>\n";
    }

  private:
    // A tile is lighter at its top left, as the cushions of the window are.
    void addGradients() {
        out_ += "<defs>\n";
        for (std::size_t i = 0; i < drawing_.colours.size(); ++i)
            out_ += "<linearGradient id=\"c" + std::to_string(i) +
                    "\" x1=\"0\" y1=\"0\" x2=\"1\" y2=\"1\"><stop offset=\"0\" stop-color=\"" +
                    colourText(drawing_.colours[i]) + "\"/><stop offset=\"1\" stop-color=\"" +
                    colourText(shaded(drawing_.colours[i])) + "\"/></linearGradient>\n";
        out_ += "</defs>\n";
    }
    static std::uint32_t shaded(std::uint32_t colour) {
        std::uint32_t dark = 0;
        for (const int shift : {16, 8, 0}) dark |= ((colour >> shift & 0xff) * 6 / 10) << shift;
        return dark;
    }
    void addTile(const MapTile& tile) {
        addRect(tile.left, tile.top, tile.right - tile.left, tile.bottom - tile.top,
                "url(#c" + std::to_string(tile.colour) + ")");
    }
    void addRect(double x, double y, double width, double height, const std::string& fill) {
        out_ += "<rect x=\"" + number(x) + "\" y=\"" + number(y) + "\" width=\"" + number(width) +
                "\" height=\"" + number(height) + "\" fill=\"" + fill + "\"/>\n";
    }
    void addText(double x, double y, const std::string& attributes, std::string_view text) {
        out_ += "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" " + attributes + ">" + escaped(text) +
                "</text>\n";
    }
    void addName(const MapName& name) {
        const std::string text = shortened(visible(name.text), name.place.width / (kLetter * font_));
        if (name.isHeading) {
            const double width = std::min<double>(
                name.place.width, line_ + kLetter * font_ * static_cast<double>(characterCount(text)));
            out_ += "<g opacity=\"0.75\">\n";
            addRect(name.place.left, name.place.top, width, line_, "#000000");
            out_ += "</g>\n";
            return addText(name.place.left + line_ / 4, name.place.top + kBaseline * line_,
                           "fill=\"#ffffff\" font-weight=\"bold\"", text);
        }
        addText(name.place.left + name.place.width / 2.0,
                name.place.top + name.place.height / 2.0 + (kBaseline - 0.5) * line_,
                std::string("text-anchor=\"middle\" fill=\"") + (name.onLight ? "#000000" : "#ffffff") + "\"",
                text);
    }
    void addLegend() {
        double x = 0;
        const double top = drawing_.height;
        for (const MapLegend& entry : drawing_.overlay.legend) {
            const std::string text = visible(entry.text);
            const double width = 1.5 * line_ + kLetter * font_ * static_cast<double>(characterCount(text));
            if (x + width > drawing_.width) return;
            addRect(x, top + (1 - kSquare) / 2 * line_, kSquare * line_, kSquare * line_,
                    colourText(entry.colour));
            addText(x + line_, top + kBaseline * line_, "fill=\"#000000\"", text);
            x += width;
        }
    }

    const MapDrawing& drawing_;
    const double line_, font_;
    std::string out_;
};

}  // namespace

std::string svgOf(const MapDrawing& drawing) {
    return Svg(drawing).text();
}

}  // namespace hl
