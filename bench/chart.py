"""chart.py - bar charts and line charts as SVG.

Each has a background of its own, since a page may be white or dark, and neither script nor font.
"""
import math
from xml.sax.saxutils import escape

INK, PALE, GRID, PAPER = "#1b1f24", "#57606a", "#d8dee4", "#ffffff"
OURS, PEER, LIMIT = "#0072b2", "#9aa4af", "#e0c068"
# Told apart with any kind of sight (after Okabe and Ito), and by the form of the dots as well.
LINES = ("#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9", "#1b1f24")
FONT = "font-family=\"system-ui, 'Segoe UI', 'DejaVu Sans', Helvetica, Arial, sans-serif\""


def _text(x, y, content, size=12, anchor="start", color=INK, weight="normal", extra=""):
    return (f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" '
            f'fill="{color}" font-weight="{weight}"{extra}>{escape(content)}</text>')


def _line(x1, y1, x2, y2, color, width=1.0):
    return (f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" '
            f'stroke="{color}" stroke-width="{width}"/>')


def _page(width, height, title, description, parts):
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}" role="img" {FONT}>')
    frame = (f'<rect x="0.5" y="0.5" width="{width - 1}" height="{height - 1}" rx="6" '
             f'fill="{PAPER}" stroke="{GRID}"/>')
    return "\n".join([head, f"<title>{escape(title)}</title>",
                      f"<desc>{escape(description)}</desc>", frame, *parts, "</svg>", ""])


def ticks(largest, about=5):
    """Round numbers from 0 up to at least the largest value, about so many of them."""
    if largest <= 0:
        return [0.0, 1.0]
    rough = largest / about
    power = 10.0 ** math.floor(math.log10(rough))
    step = next(factor * power for factor in (1, 2, 2.5, 5, 10) if factor * power >= rough * 0.999)
    return [index * step for index in range(math.ceil(largest / step * 0.999) + 1)]


def number(value):
    """Three digits, which is more than a measured figure is worth."""
    if value == 0:
        return "0"
    digits = max(0, 2 - math.floor(math.log10(abs(value))))
    return f"{value:,.{digits}f}"


def _tick_text(value, step):
    return f"{value:,.{max(0, -math.floor(math.log10(step) + 1e-9))}f}"


def bars(title, unit, rows, description):
    """A chart of (name, median, lowest, highest, color) rows, as long as they are fast."""
    left, right, top, row = 168, 74, 58, 26
    width, height = 720, top + row * len(rows) + 48
    marks = ticks(max(high for _, _, _, high, _ in rows))
    scale = (width - left - right) / marks[-1]
    bottom = top + row * len(rows)
    parts = [_text(16, 26, title, 15, weight="600"), _text(16, 44, description, 11, color=PALE)]
    for mark in marks:
        x = left + mark * scale
        parts.append(_line(x, top - 4, x, bottom + 4, GRID))
        parts.append(_text(x, bottom + 18, _tick_text(mark, marks[1]), 11, "middle", PALE))
    parts.append(_text(left + marks[-1] * scale / 2, bottom + 36, unit, 11, "middle", PALE))
    for index, (name, value, low, high, color) in enumerate(rows):
        y = top + row * index + 4
        middle = y + (row - 8) / 2
        weight = "600" if color == OURS else "normal"
        parts.append(_text(left - 8, middle + 4, name, 12, "end", weight=weight))
        parts.append(f'<rect x="{left}" y="{y}" width="{max(value * scale, 0.5):.1f}" '
                     f'height="{row - 8}" rx="2" fill="{color}"/>')
        parts.append(_line(left + low * scale, middle, left + high * scale, middle, INK, 1.2))
        for end in (low, high):
            parts.append(_line(left + end * scale, middle - 3, left + end * scale, middle + 3,
                               INK, 1.2))
        parts.append(_text(left + max(value, high) * scale + 6, middle + 4, number(value), 12,
                           weight=weight))
    return _page(width, height, title, description, parts)


def _dot(index, x, y, color):
    if index % 3 == 0:
        return f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3.6" fill="{color}"/>'
    if index % 3 == 1:
        return (f'<rect x="{x - 3.3:.1f}" y="{y - 3.3:.1f}" width="6.6" height="6.6" '
                f'fill="{color}"/>')
    return f'<path d="M{x:.1f} {y - 4.4:.1f}l4.4 7.6h-8.8z" fill="{color}"/>'


def lines(title, unit, series, description):
    """A chart of (name, [(label, size, value)]) series over sizes, which grow tenfold a step."""
    left, top, plot_width, plot_height, legend = 64, 62, 440, 260, 226
    width, height = left + plot_width + legend, top + plot_height + 56
    labels = {size: label for _, points in series for label, size, _ in points}
    low, high = math.log10(min(labels)), math.log10(max(labels))
    marks = ticks(max(value for _, points in series for _, _, value in points))

    def place(size, value):
        return (left + 16 + (math.log10(size) - low) / max(high - low, 1e-9) * (plot_width - 32),
                top + plot_height * (1 - value / marks[-1]))

    parts = [_text(16, 26, title, 15, weight="600"), _text(16, 44, description, 11, color=PALE)]
    for mark in marks:
        y = place(min(labels), mark)[1]
        parts.append(_line(left, y, left + plot_width, y, GRID))
        parts.append(_text(left - 8, y + 4, _tick_text(mark, marks[1]), 11, "end", PALE))
    for size, label in labels.items():
        x = place(size, 0)[0]
        parts.append(_line(x, top + plot_height, x, top + plot_height + 4, PALE))
        parts.append(_text(x, top + plot_height + 18, label, 11, "middle", PALE))
    middle = top + plot_height / 2
    parts.append(_text(18, middle, unit, 11, "middle", PALE,
                       extra=f' transform="rotate(-90 18 {middle:.1f})"'))
    parts.append(_text(left + plot_width / 2, top + plot_height + 40,
                       "bytes of the document (each step is tenfold)", 11, "middle", PALE))
    for index, (name, points) in enumerate(series):
        color = LINES[index % len(LINES)]
        places = [place(size, value) for _, size, value in points]
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in places)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{color}" '
                     'stroke-width="2"/>')
        parts += [_dot(index, x, y, color) for x, y in places]
        y = top + 8 + 20 * index
        parts.append(_line(left + plot_width + 14, y, left + plot_width + 38, y, color, 2))
        parts.append(_dot(index, left + plot_width + 26, y, color))
        parts.append(_text(left + plot_width + 46, y + 4, name, 11))
    return _page(width, height, title, description, parts)
