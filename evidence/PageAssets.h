#pragma once

#include <string_view>

namespace cirrovane {

// What every page carries, byte for byte the same, so that the page can name it by its hash and forbid all else.

inline constexpr std::string_view kPageStyle = R"css(
:root{color-scheme:light dark;--ground:#f4f6f9;--card:#fff;--text:#16202c;--dim:#56616f;--line:#d9dfe6;
--good:#137333;--bad:#b3261e;--warn:#8a5a00;--note:#0b5cad;--tint:#fbe9e7}
@media (prefers-color-scheme:dark){:root{--ground:#0b141e;--card:#152130;--text:#eef2f6;--dim:#a5b1bf;--line:#2c3a4b;
--good:#4fd675;--bad:#ff7d75;--warn:#ffb340;--note:#6fc3ff;--tint:#2b1d22}}
*{box-sizing:border-box}
body{margin:0;background:var(--ground);color:var(--text);font:15px/1.5 system-ui,-apple-system,"Segoe UI",sans-serif}
main{max-width:1060px;margin:0 auto;padding:24px 20px 48px}
section,header{background:var(--card);border:1px solid var(--line);border-radius:14px;padding:18px 20px;margin:0 0 16px}
h1{font-size:40px;line-height:1.1;margin:4px 0 6px}
h1 span{font-size:20px;font-weight:600;margin-left:8px;white-space:nowrap}
h2{font-size:18px;margin:0 0 10px}
p{margin:6px 0}
.dim{color:var(--dim)}
.small{font-size:13px}
.good{color:var(--good)}.bad{color:var(--bad)}.warn{color:var(--warn)}.note{color:var(--note)}
.scores{display:flex;flex-wrap:wrap;gap:8px 32px;margin:12px 0 0;padding:0;list-style:none}
.scores b{font-size:22px;margin-right:6px}
.checks{list-style:none;margin:0;padding:0}
.checks li{display:grid;grid-template-columns:100px 1fr;gap:10px;padding:7px 0;border-top:1px solid var(--line)}
.checks li:first-child{border-top:0}
.sign{font-weight:600}.checks .sign{white-space:nowrap}
table{border-collapse:collapse;width:100%;table-layout:fixed}
th,td{text-align:left;vertical-align:top;padding:7px 10px 7px 0;border-top:1px solid var(--line);
overflow-wrap:anywhere}
th{border-top:0;color:var(--dim);font-size:13px;font-weight:600}
.reason{width:17%}.where{width:16%}.when{width:13%}.state{width:12%}.times{width:9%}.count{width:12%}
bdi{unicode-bidi:isolate}
.file{font-weight:600;display:block}
.path{font-size:13px;color:var(--dim);display:block}
.filter{display:flex;flex-wrap:wrap;gap:10px;align-items:center;margin:0 0 10px}
.filter[hidden],tr[hidden]{display:none}
.filter input,.filter select{font:inherit;color:inherit;background:var(--ground);border:1px solid var(--line);
border-radius:8px;padding:6px 10px;min-width:0}
.filter input{flex:1 1 220px}
.timeline{display:block;width:100%;height:auto}
.timeline text{fill:var(--dim);font-size:12px}
.grid{stroke:var(--line)}
.danger{fill:var(--tint)}
.line{fill:none;stroke:var(--dim);stroke-width:1.5}
.safe{fill:var(--good)}.unsafe{fill:var(--bad)}
.key{display:inline-block;width:9px;height:9px;margin-right:5px}
.key.round{border-radius:50%;background:var(--good)}
.key.turned{transform:rotate(45deg);background:var(--bad)}
@media (max-width:680px){
main{padding:10px 8px 32px}section,header{padding:14px;border-radius:12px}
h1 span{display:block;margin:4px 0 0;white-space:normal}.timeline text{font-size:20px}
.checks li{grid-template-columns:1fr;gap:0}
table,tbody{display:block}thead{position:absolute;clip-path:inset(50%);height:1px;overflow:hidden}
tr{display:block;padding:9px 0;border-top:1px solid var(--line)}tbody tr:first-child{border-top:0}
td{display:block;width:auto;border:0;padding:1px 0}
td[data-label]::before{content:attr(data-label) ": ";color:var(--dim);font-size:13px}}
@media print{:root{color-scheme:light;--ground:#fff;--card:#fff;--text:#000;--dim:#444;--line:#bbb;--good:#137333;
--bad:#b3261e;--warn:#8a5a00;--note:#0b5cad;--tint:#f6e5e3}
body{font-size:9.5pt}.path,.small,th{font-size:8pt!important}#timeline{break-inside:avoid}main{max-width:none;padding:0}
section,header{border:0;border-radius:0;padding:0 0 8pt;margin:0 0 10pt}
.filter{display:none}tr,li,svg,h2{break-inside:avoid}h2{break-after:avoid}thead{display:table-header-group}
*{print-color-adjust:exact;-webkit-print-color-adjust:exact}}
)css";

inline constexpr std::string_view kPageStyleHash = "sha256-bW9+j3L0cd/W3raAm2RYxlX00i8KNS60Pmzl56A2Q0M=";

inline constexpr std::string_view kPageScript = R"js(
(function () {
  "use strict";
  var filter = document.getElementById("filter");
  if (!filter) { return; }
  var words = document.getElementById("words");
  var reason = document.getElementById("reason");
  var count = document.getElementById("count");
  var rows = Array.prototype.map.call(document.querySelectorAll("#blockers tbody tr"), function (row) {
    return {row: row, text: row.textContent.toLowerCase(), reason: row.getAttribute("data-reason")};
  });
  function narrow() {
    var wanted = words.value.toLowerCase();
    var shown = 0;
    rows.forEach(function (entry) {
      var fits = entry.text.indexOf(wanted) >= 0 && (!reason.value || entry.reason === reason.value);
      entry.row.hidden = !fits;
      shown += fits ? 1 : 0;
    });
    count.textContent = shown === rows.length ? "" : shown + " of " + rows.length;
  }
  words.addEventListener("input", narrow);
  reason.addEventListener("change", narrow);
  filter.hidden = false;
  narrow();
}());
)js";

inline constexpr std::string_view kPageScriptHash = "sha256-UZtL1K+FhoNBzUe8pYP8jd0xBudfJwF/IgRMVRHZaf4=";

}  // namespace cirrovane
