// SPDX-License-Identifier: GPL-3.0-or-later
#include "HtmlStyle.h"

namespace Preview::Html {

QString styleSheet()
{
    return QStringLiteral(R"css(
:root { color-scheme: light dark; --text: #1d1d1f; --muted: #6e6e73; --page: #f5f5f7;
  --card: #ffffff; --line: #d2d2d7; --link: #0066cc; --missing: #b3261e; --ok: #1a7f37; }
@media (prefers-color-scheme: dark) {
  :root { --text: #f5f5f7; --muted: #a1a1a6; --page: #1c1c1e; --card: #2c2c2e; --line: #3a3a3c;
    --link: #4da3ff; --missing: #ff6b60; --ok: #4cc26b; } }
body { margin: 0; padding: 16px 24px; font: 13px/1.45 system-ui, sans-serif; color: var(--text);
  background: var(--page); }
header h1 { margin: 0 0 2px; font-size: 20px; overflow-wrap: anywhere; }
.kind, .hint, .note, .left-out { color: var(--muted); margin: 4px 0; }
.facts { display: grid; grid-template-columns: max-content 1fr; gap: 2px 12px; margin: 8px 0; }
.facts dt { color: var(--muted); } .facts dd { margin: 0; overflow-wrap: anywhere; }
.pages { display: flex; flex-direction: column; gap: 20px; align-items: center; margin: 16px 0;
  padding: 20px; border-radius: 8px; }
.pages.grid { display: grid; grid-template-columns: repeat(auto-fill, minmax(180px, 1fr));
  align-items: start; }
.spread { display: flex; flex-wrap: wrap; gap: 12px; justify-content: center; max-width: 100%; }
figure { margin: 0; text-align: center; max-width: 100%; min-width: 0; }
figure img { display: block; max-width: 100%; height: auto; box-shadow: 0 1px 4px rgba(0,0,0,.35); }
.pages.grid figure img { width: 100%; }
figcaption { color: var(--muted); font-size: 11px; margin-top: 4px; }
figure img { background: #ffffff; }
.background-white .pages { background: #ffffff; }
.background-gray .pages { background: #808080; }
.background-black .pages { background: #000000; }
.background-none .pages { background: repeating-conic-gradient(#cccccc 0 25%, #ffffff 0 50%)
  0 0 / 16px 16px; }
.background-gray figcaption, .background-black figcaption { color: #e0e0e0; }
.panel { background: var(--card); border: 1px solid var(--line); border-radius: 8px;
  padding: 8px 14px; margin: 14px 0; }
.panel h2 { font-size: 14px; margin: 4px 0 8px; } .panel h3 { font-size: 12px; margin: 10px 0 4px; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; padding: 3px 8px 3px 0; border-bottom: 1px solid var(--line);
  vertical-align: middle; overflow-wrap: anywhere; }
th { color: var(--muted); font-weight: 500; }
a { color: var(--link); text-decoration: none; } a:hover { text-decoration: underline; }
.missing, .missing span { color: var(--missing); } .installed { color: var(--ok); }
.links ul { margin: 0; padding-left: 18px; }
.chips { display: flex; flex-wrap: wrap; gap: 8px; }
.swatch { display: flex; flex-direction: column; align-items: center; width: 72px;
  font-size: 11px; text-align: center; overflow-wrap: anywhere; }
.swatch .chip { width: 40px; height: 40px; margin-bottom: 3px; }
.chip { display: inline-block; width: 18px; height: 18px; border-radius: 4px;
  border: 1px solid var(--line); vertical-align: middle; }
.chip.unknown { background: repeating-linear-gradient(45deg, transparent 0 3px, var(--line) 3px 5px); }
footer { margin-top: 18px; color: var(--muted); }
#loupe { position: fixed; display: none; width: 180px; height: 180px; border-radius: 50%;
  border: 2px solid var(--line); box-shadow: 0 2px 10px rgba(0,0,0,.4); pointer-events: none;
  background-repeat: no-repeat; background-color: #ffffff; }
)css");
}

QString loupeScript()
{
    return QStringLiteral(R"js(
(function () {
  var loupe = document.getElementById('loupe');
  var zoom = 2;
  document.querySelectorAll('figure img').forEach(function (img) {
    img.addEventListener('mousemove', function (event) {
      var box = img.getBoundingClientRect();
      var x = event.clientX - box.left, y = event.clientY - box.top;
      var width = box.width * zoom, height = box.height * zoom;
      loupe.style.display = 'block';
      loupe.style.left = (event.clientX - 90) + 'px';
      loupe.style.top = (event.clientY - 90) + 'px';
      loupe.style.backgroundImage = 'url("' + img.getAttribute('src') + '")';
      loupe.style.backgroundSize = width + 'px ' + height + 'px';
      loupe.style.backgroundPosition = (90 - x * zoom) + 'px ' + (90 - y * zoom) + 'px';
    });
    img.addEventListener('mouseleave', function () { loupe.style.display = 'none'; });
  });
})();
)js");
}

}
