"""The page of a field guide: one self-contained HTML file with both languages."""

from html import escape
from typing import List, Sequence, Tuple

from data_texts import LABELS, MONTHS
from model import Text

_STYLE = """
    body { font-family: sans-serif; max-width: 42em; margin: 2em auto; color: #24302a; line-height: 1.5; }
    img { width: 100%; border-radius: 12px; }
    h1 { margin-bottom: 0; }
    .latin { font-style: italic; color: #5c6f64; margin-top: 0; }
    th { text-align: left; padding-right: 1.5em; font-weight: normal; color: #5c6f64; }
    aside { background: #eef4e6; border-radius: 8px; padding: 0.6em 1em; }
    section + section { border-top: 1px solid #cdd8cf; margin-top: 2em; }
"""

Fact = Tuple[str, Text]


def months(span: Tuple[int, int]) -> Text:
    first, last = span
    if span == (1, 12):
        return LABELS["all-year"]
    return Text(f"{MONTHS[first - 1].de} bis {MONTHS[last - 1].de}",
                f"{MONTHS[first - 1].en} to {MONTHS[last - 1].en}")


def measure(value: int, unit: str) -> Text:
    """A number with its unit, kept together on one line."""
    return Text(f"{value}\u00a0{unit}", f"{value}\u00a0{unit}")


def guide_page(title: Text, latin: str, text: Text, tip: Text, facts: Sequence[Fact]) -> bytes:
    parts: List[str] = [
        "<!DOCTYPE html>", '<html lang="de">', "<head>", '  <meta charset="utf-8">',
        f"  <title>{escape(title.de)} – {escape(title.en)}</title>", f"  <style>{_STYLE}  </style>",
        "</head>", "<body>", '  <img src="picture.svg" alt="">']
    for language in Text._fields:
        parts += _section(language, title, latin, text, tip, facts)
    return ("\n".join(parts + ["</body>", "</html>"]) + "\n").encode("utf-8")


def _section(language: str, title: Text, latin: str, text: Text, tip: Text, facts: Sequence[Fact]) -> List[str]:
    def said(value: Text) -> str:
        return escape(getattr(value, language))

    rows = [f"      <tr><th>{said(LABELS[label])}</th><td>{said(value)}</td></tr>" for label, value in facts]
    return [f'  <section lang="{language}">', f"    <h1>{said(title)}</h1>",
            f'    <p class="latin">{escape(latin)}</p>', f"    <p>{said(text)}</p>",
            "    <table>", *rows, "    </table>",
            f"    <aside><strong>{said(LABELS['tip'])}:</strong> {said(tip)}</aside>", "  </section>"]
