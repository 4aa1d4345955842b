"""chart.py - bar charts and line charts as SVG.

Each has a background of its own, light or dark as the reader's page, and neither script nor font.
"""
import math
from xml.sax.saxutils import escape

INK, PALE, GRID, PAPER = "#1b1f24", "#57606a", "#d8dee4", "#ffffff"
OURS, PEER, LIMIT = "#0072b2", "#9aa4af", "#e0c068"
# Told apart with any kind of sight (after Okabe and Ito), and by the form of the dots as well.
LINES = ("#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9", "#1b1f24")
# What takes the place of a color where a reader has chosen dark pages.
DARK = {INK: "#e6edf3", PALE: "#9198a1", GRID: "#30363d", PAPER: "#0d1117", OURS: "#4aa3e0",
        PEER: "#5c6670", LIMIT: "#a08432"}
FONT = "font-family=\"system-ui, 'Segoe UI', 'DejaVu Sans', Helvetica, Arial, sans-serif\""
STYLE = ("<style>@media (prefers-color-scheme: dark) {\n" + "\n".join(
    f'[fill="{light}"] {{ fill: {dark} }} [stroke="{light}"] {{ stroke: {dark} }}'
    for light, dark in DARK.items()) + "\n}</style>")
WIDTH = 720
ROW = 20


def _text(x, y, content, size=12, anchor="start", color=INK, weight="normal", extra=""):
    return (f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" '
            f'fill="{color}" font-weight="{weight}"{extra}>{escape(content)}</text>')


def _line(x1, y1, x2, y2, color, width=1.0):
    return (f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" '
            f'stroke="{color}" stroke-width="{width}"/>')


def _page(width, height, title, description, note, parts):
    """A chart with its title and description above it and what it was measured with below."""
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height + 22}" '
            f'viewBox="0 0 {width} {height + 22}" role="img" {FONT}>')
    frame = (f'<rect x="0.5" y="0.5" width="{width - 1}" height="{height + 21}" rx="6" '
             f'fill="{PAPER}" stroke="{GRID}"/>')
    texts = [_text(16, 26, title, 15, weight="600"), _text(16, 44, description, 11, color=PALE),
             _text(16, height + 10, note, 10, color=PALE)]
    return "\n".join([head, f"<title>{escape(title)}</title>",
                      f"<desc>{escape(description)}</desc>", STYLE, frame, *texts, *parts,
                      "</svg>", ""])


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


def _bar(left, y, scale, row):
    """One bar with its name, its figure, and a line from its lowest to its highest."""
    name, value, low, high, color = row
    middle = y + ROW / 2
    weight = "600" if color == OURS else "normal"
    ends = [left + low * scale, left + high * scale]
    return [_text(left - 8, middle + 4, name, 12, "end", weight=weight),
            f'<rect x="{left:.1f}" y="{y + 3:.1f}" width="{max(value * scale, 0.5):.1f}" '
            f'height="{ROW - 6}" rx="2" fill="{color}"/>',
            _line(ends[0], middle, ends[1], middle, INK, 1.2),
            *(_line(end, middle - 3, end, middle + 3, INK, 1.2) for end in ends),
            _text(left + max(value, high) * scale + 6, middle + 4, number(value), 12,
                  weight=weight)]


def _bar_panel(x, top, width, unit, groups):
    """Groups of bars on one scale; gives the parts and where they end."""
    left, right = x + 160, 62
    marks = ticks(max(row[3] for _, rows in groups for row in rows))
    scale = (width - 160 - right) / marks[-1]
    heights = [24 + ROW * len(rows) for _, rows in groups]
    bottom = top + sum(heights)
    parts = []
    for mark in marks:
        at = left + mark * scale
        parts.append(_line(at, top, at, bottom + 4, GRID))
        parts.append(_text(at, bottom + 18, _tick_text(mark, marks[1]), 11, "middle", PALE))
    parts.append(_text(left + marks[-1] * scale / 2, bottom + 35, unit, 11, "middle", PALE))
    for (heading, rows), height in zip(groups, heights):
        parts.append(_text(x, top + 17, heading, 12, weight="600"))
        for index, row in enumerate(rows):
            parts += _bar(left, top + 24 + ROW * index, scale, row)
        top += height
    return parts, bottom + 44


def bars(title, unit, groups, description, note):
    """A chart of (heading, rows) groups; a row is (name, median, lowest, highest, color)."""
    parts, bottom = _bar_panel(16, 56, WIDTH - 16, unit, groups)
    return _page(WIDTH, bottom, title, description, note, parts)


def panels(title, unit, groups, description, note):
    """The same with a scale for each group, side by side in two columns."""
    width = 400
    parts, top = [], 56
    for index in range(0, len(groups), 2):
        row = [_bar_panel(16 + width * column, top, width - 16, unit, [group])
               for column, group in enumerate(groups[index:index + 2])]
        parts += [part for found, _ in row for part in found]
        top = max(bottom for _, bottom in row)
    return _page(2 * width + 16, top, title, description, note, parts)


def _dot(index, x, y, color):
    if index % 3 == 0:
        return f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3.6" fill="{color}"/>'
    if index % 3 == 1:
        return (f'<rect x="{x - 3.3:.1f}" y="{y - 3.3:.1f}" width="6.6" height="6.6" '
                f'fill="{color}"/>')
    return f'<path d="M{x:.1f} {y - 4.4:.1f}l4.4 7.6h-8.8z" fill="{color}"/>'


def lines(title, unit, series, description, note):
    """A chart of (name, [(label, size, value)]) series over sizes, which grow tenfold a step."""
    left, top, plot_width, plot_height, legend = 64, 62, 440, 260, 226
    width, height = left + plot_width + legend, top + plot_height + 56
    labels = {size: label for _, points in series for label, size, _ in points}
    low, high = math.log10(min(labels)), math.log10(max(labels))
    marks = ticks(max(value for _, points in series for _, _, value in points))

    def place(size, value):
        return (left + 16 + (math.log10(size) - low) / max(high - low, 1e-9) * (plot_width - 32),
                top + plot_height * (1 - value / marks[-1]))

    parts = []
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
    return _page(width, height, title, description, note, parts)
