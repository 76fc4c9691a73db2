#include "sheet/ScrubPageParts.h"

namespace KestoHost {

const char* const scrubPageHead = R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>{}</title>
)";

const char* const scrubPageStyle = R"(<style>
:root { color-scheme: light dark; --ground: #f6f6f4; --ink: #1d1d1b; --quiet: #6a6a65; --edge: #d8d8d3; --mark: #c8321e; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #161615; --ink: #ededea; --quiet: #9c9c96; --edge: #3a3a37; --mark: #ff7a63; }
}
* { box-sizing: border-box; }
body { margin: 0; padding: clamp(0.75rem, 3vw, 2rem); background: var(--ground); color: var(--ink);
  font: 1rem/1.4 system-ui, sans-serif; }
main { max-width: 60rem; margin: 0 auto; }
h1 { margin: 0 0 0.75rem; font-size: 1.1rem; font-weight: 600; overflow-wrap: anywhere; }
#scrubber { border-radius: 0.4rem; outline-offset: 3px; cursor: ew-resize; touch-action: pan-y; user-select: none;
  -webkit-user-select: none; }
#scrubber:focus-visible { outline: 3px solid var(--mark); }
canvas { display: block; width: 100%; }
#picture { max-height: 70vh; object-fit: contain; background: #000; border-radius: 0.4rem 0.4rem 0 0; }
#track { position: relative; height: 4rem; margin-top: 2px; overflow: hidden; background: var(--edge);
  border-radius: 0 0 0.4rem 0.4rem; }
#strip { height: 100%; }
#mark { position: absolute; top: 0; bottom: 0; left: 0; width: 3px; margin-left: -1.5px; background: var(--mark);
  box-shadow: 0 0 0 1px rgba(0, 0, 0, 0.4); pointer-events: none; }
#label { display: flex; justify-content: space-between; gap: 1rem; margin: 0.6rem 0 1.25rem;
  font-variant-numeric: tabular-nums; }
#time { font-size: 1.25rem; font-weight: 600; }
#place, .hint { color: var(--quiet); }
.hint { font-size: 0.9rem; }
summary { cursor: pointer; padding: 0.4rem 0; }
#sheet { max-width: 100%; height: auto; border: 1px solid var(--edge); }
</style>
</head>
)";

const char* const scrubPageBody = R"(<body>
<main>
<h1>{}</h1>
<div id="player" hidden>
<div id="scrubber" role="slider" tabindex="0" aria-label="Time" aria-valuemin="0">
<canvas id="picture"></canvas>
<div id="track"><canvas id="strip" height="64"></canvas><div id="mark"></div></div>
</div>
<p id="label"><output id="time"></output><span id="place"></span></p>
<p class="hint">Move along the picture or the strip, or use the arrow keys, Page Up, Page Down, Home and End.</p>
</div>
<details id="all" open>
<summary>All {} tiles</summary>
<img id="sheet" alt="The whole sheet of tiles" width="{}" height="{}" src="data:{};base64,)";

const char* const scrubPageAfterPicture = R"(">
</details>
</main>
<script>
"use strict";
const sheet = )";

const char* const scrubPageScript = R"(;
const part = (id) => document.getElementById(id);
const source = part("sheet"), scrubber = part("scrubber"), picture = part("picture"), strip = part("strip");
const last = sheet.tiles.length - 1;
let shown = -1;

function clock(milliseconds) {
  const two = (n) => String(n).padStart(2, "0");
  const seconds = Math.floor(milliseconds / 1000);
  const minutes = two(Math.floor(seconds / 60) % 60) + ":" + two(seconds % 60);
  const fraction = "." + String(milliseconds % 1000).padStart(3, "0");
  return (seconds >= 3600 ? Math.floor(seconds / 3600) + ":" : "") + minutes + fraction;
}

/* The last tile that starts at that time or before it; before the first tile the first one. */
function tileAt(time) {
  let low = 0, high = last;
  while (low < high) {
    const middle = Math.ceil((low + high) / 2);
    if (sheet.tiles[middle].start <= time) low = middle; else high = middle - 1;
  }
  return low;
}

function drawTile(canvas, tile, x, y, width, height) {
  canvas.getContext("2d").drawImage(source, tile.x, tile.y, tile.width, tile.height, x, y, width, height);
}

function markAt(time) {
  part("mark").style.left = 100 * time / sheet.end + "%";
}

function show(index) {
  if (index === shown) return;
  shown = index;
  const tile = sheet.tiles[index];
  const start = clock(tile.start);
  picture.getContext("2d").clearRect(0, 0, picture.width, picture.height);
  drawTile(picture, tile, 0, 0, picture.width, picture.height);
  part("time").textContent = start;
  part("place").textContent = (tile.hole ? "no picture, " : "") + (index + 1) + " of " + sheet.tiles.length;
  scrubber.setAttribute("aria-valuenow", tile.start);
  scrubber.setAttribute("aria-valuetext",
    start + ", tile " + (index + 1) + " of " + sheet.tiles.length + (tile.hole ? ", no picture" : ""));
}

function showTime(time) {
  markAt(time);
  show(tileAt(time));
}

function showTile(index) {
  const tile = Math.min(Math.max(index, 0), last);
  markAt(sheet.tiles[tile].start);
  show(tile);
}

function drawStrip() {
  const tile = sheet.tiles[0];
  const width = part("track").clientWidth || 320, height = strip.height;
  const across = Math.max(1, Math.round(width / (height * tile.width / tile.height)));
  strip.width = width;
  for (let i = 0; i < across; ++i) {
    const middle = (i + 0.5) / across * sheet.end;
    const left = Math.round(i * width / across), right = Math.round((i + 1) * width / across);
    drawTile(strip, sheet.tiles[tileAt(middle)], left, 0, right - left, height);
  }
}

function onPointer(event) {
  const box = scrubber.getBoundingClientRect();
  const share = Math.min(Math.max((event.clientX - box.left) / box.width, 0), 1);
  showTime(share * sheet.end);
}

const page = Math.max(1, Math.round(sheet.tiles.length / 10));
const keys = {
  ArrowLeft: () => shown - 1, ArrowDown: () => shown - 1, ArrowRight: () => shown + 1, ArrowUp: () => shown + 1,
  PageDown: () => shown - page, PageUp: () => shown + page, Home: () => 0, End: () => last,
};

function onKey(event) {
  const target = keys[event.key];
  if (!target || event.altKey || event.ctrlKey || event.metaKey) return;
  event.preventDefault();
  showTile(target());
}

function start() {
  picture.width = sheet.tiles[0].width;
  picture.height = sheet.tiles[0].height;
  /* Larger than this, the tile's own pixels would show more than the picture. */
  part("player").style.maxWidth = Math.max(320, 4 * picture.width) + "px";
  scrubber.setAttribute("aria-valuemax", sheet.end);
  part("player").hidden = false;
  part("all").open = false;
  drawStrip();
  showTile(0);
  for (const kind of ["pointerdown", "pointermove"]) scrubber.addEventListener(kind, onPointer);
  scrubber.addEventListener("keydown", onKey);
  window.addEventListener("resize", drawStrip);
  document.documentElement.dataset.ready = "true";
}

source.decode().then(start, () => {});
</script>
</body>
</html>
)";

} // namespace KestoHost
