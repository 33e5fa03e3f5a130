"""A page that shows the results of a command: one file that refers to nothing else."""

import html
import math
from typing import Any

from kvr_batch.commands import PASSED
from kvr_batch.store import Store, restored

SLOWEST = 20
# Of failures with one message, so many are listed with their logs; all are counted.
LISTED = 20
LISTED_GROUPS = 500
LOG_CHARACTERS = 8000
CLASS = ' class="n"'

STYLE = """
body { font: 15px/1.45 system-ui, sans-serif; margin: 2em auto; max-width: 70em; padding: 0 1em; color: #1d2329; }
h1 { font-size: 1.5em; } h2 { font-size: 1.15em; margin-top: 2em; } h3 { font-size: 1em; }
table { border-collapse: collapse; } td, th { padding: .2em .9em .2em 0; text-align: left; vertical-align: top; }
td.n, th.n { text-align: right; font-variant-numeric: tabular-nums; } tr { border-bottom: 1px solid #e3e6ea; }
pre { background: #f4f5f7; padding: .8em; overflow-x: auto; white-space: pre-wrap; overflow-wrap: anywhere; }
.bad { color: #a3180e; } .good { color: #14691f; } td { overflow-wrap: anywhere; } rect { fill: #4a7db5; }
svg text { font: 12px system-ui, sans-serif; fill: #1d2329; } :target { outline: 2px solid #4a7db5; }
"""


def text(value: Any) -> str:
    """Anything as text of the page."""
    return html.escape(restored(value).encode("utf-8", "backslashreplace").decode())


def _table(heads: list[str], numbers: range, rows: list[list[str]]) -> str:
    """Cells are text of the page; columns of numbers stand to the right."""
    def cells(tag: str, row: list[str]) -> str:
        return "".join(f'<{tag}{CLASS if place in numbers else ""}>{cell}</{tag}>' for place, cell in enumerate(row))
    return ("<table><tr>" + cells("th", heads) + "</tr>\n"
            + "\n".join(f"<tr>{cells('td', row)}</tr>" for row in rows) + "</table>\n")


def _outcomes(store: Store, kind: str) -> str:
    rows = store.query("SELECT outcome, count(*), sum(seconds), max(seconds), max(memory) FROM results WHERE kind = ?"
                       " GROUP BY outcome ORDER BY outcome != ?, count(*) DESC, outcome", kind, PASSED)
    return _table(["outcome", "files", "seconds", "longest", "most memory"], range(1, 5),
                  [[f'<span class="{"good" if name == PASSED else "bad"}">{text(name)}</span>', f"{count:,}",
                    f"{seconds:,.1f}", f"{longest:,.1f}", f"{memory / 1e6:,.0f} MB"]
                   for name, count, seconds, longest, memory in rows])


def _seconds_text(seconds: float) -> str:
    return f"{seconds:g} s" if seconds >= 1 else f"1/{round(1 / seconds)} s"


def histogram(counts: dict[int, int]) -> str:
    """Counts of times by the powers of two that they are below."""
    if not counts:
        return "<p>Nothing ran.</p>\n"
    width, height = 56, 160
    first, last, most = min(counts), max(counts), max(counts.values())
    parts = []
    for place, power in enumerate(range(first, last + 1)):
        count = counts.get(power, 0)
        tall = height * count / most
        left = place * width
        parts.append(f'<rect x="{left + 3}" y="{20 + height - tall:.1f}" width="{width - 6}" height="{tall:.1f}"/>'
                     f'<text x="{left + width / 2}" y="{14 + height - tall:.1f}" text-anchor="middle">{count:,}</text>'
                     f'<text x="{left + width / 2}" y="{height + 36}" text-anchor="middle">'
                     f'&lt; {_seconds_text(2.0 ** power)}</text>')
    wide = (last - first + 1) * width
    return (f'<svg role="img" aria-label="files by the seconds that they took" width="{wide}" height="{height + 44}" '
            f'viewBox="0 0 {wide} {height + 44}">{"".join(parts)}</svg>\n')


def _times(store: Store, kind: str) -> str:
    counts: dict[int, int] = {}
    for (seconds,) in store.query("SELECT seconds FROM results WHERE kind = ? AND seconds > 0", kind):
        power = math.floor(math.log2(seconds)) + 1
        counts[power] = counts.get(power, 0) + 1
    return histogram(counts)


def _slowest(store: Store, kind: str) -> str:
    rows = store.query("SELECT seconds, memory, outcome, input FROM results WHERE kind = ? ORDER BY seconds DESC, input"
                       " LIMIT ?", kind, SLOWEST)
    return _table(["s", "MB", "outcome", "file"], range(2),
                  [[f"{seconds:,.1f}", f"{memory / 1e6:,.0f}", text(outcome), text(path)]
                   for seconds, memory, outcome, path in rows])


def _failures(store: Store, kind: str) -> str:
    groups = list(store.query("SELECT outcome, message, count(*) FROM results WHERE kind = ? AND outcome != ? GROUP BY"
                              " outcome, message ORDER BY count(*) DESC, outcome, message", kind, PASSED))
    parts: list[str] = []
    logs: list[str] = []
    for outcome, message, count in groups[:LISTED_GROUPS]:
        parts.append(f'<h3><span class="bad">{text(outcome)}</span>, {count:,}: {text(message)}</h3>\n<ul>\n')
        for path, log in store.query("SELECT input, log FROM results WHERE kind = ? AND outcome = ? AND message = ?"
                                     " ORDER BY input LIMIT ?", kind, outcome, message, LISTED):
            number = len(logs) + 1
            parts.append(f'<li>{text(path)} (<a href="#log-{number}">log</a>)</li>\n')
            logs.append(f'<h3 id="log-{number}">{text(path)}</h3>\n<pre>{text(log[:LOG_CHARACTERS])}</pre>\n')
        parts.append("</ul>\n" + (f"<p>and {count - LISTED:,} more</p>\n" if count > LISTED else ""))
    if len(groups) > LISTED_GROUPS:
        parts.append(f"<p>and {len(groups) - LISTED_GROUPS:,} more messages</p>\n")
    if not groups:
        return "<p>None.</p>\n"
    return "".join(parts) + "<h2>Logs</h2>\n" + "".join(logs)


def page(store: Store, kind: str) -> str:
    """The page of all results of a command."""
    versions = [row[0] for row in store.query("SELECT DISTINCT version FROM results WHERE kind = ? ORDER BY 1", kind)]
    commands = [row[0] for row in store.query("SELECT DISTINCT command FROM results WHERE kind = ? ORDER BY 1", kind)]
    return f"""<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>kvr {text(kind)}</title>
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<style>{STYLE}</style></head><body>
<h1>kvr {text(kind)}</h1>
<p>{text("; ".join(commands))}<br>{text("; ".join(versions))}</p>
<h2>Outcomes</h2>
{_outcomes(store, kind)}<h2>Times</h2>
{_times(store, kind)}<h2>The slowest</h2>
{_slowest(store, kind)}<h2>Failures</h2>
{_failures(store, kind)}</body></html>
"""
