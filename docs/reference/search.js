// Full-text search over searchIndex, which holds [name, page, kind, text] rows; works from a file.
"use strict";
(() => {
  const LIMIT = 30;
  const box = document.getElementById("search");
  const list = document.getElementById("results");
  const up = document.body.dataset.up;
  const rows = searchIndex.map((row) => ({ row, name: row[0].toLowerCase(), text: row[3].toLowerCase() }));

  // Names weigh more than texts, and the start of a name more than its middle; 0 is no match.
  const weight = (entry, words) => {
    let sum = 0;
    for (const word of words) {
      const plain = entry.name.replaceAll("_", "");
      const at = entry.name.indexOf(word);
      if (entry.name === word) sum += 100;
      else if (at === 0) sum += 40;
      else if (at > 0) sum += 20;
      else if (plain.includes(word.replaceAll("_", ""))) sum += 15;
      else if (entry.text.includes(word)) sum += 3;
      else return 0;
    }
    return sum;
  };

  const show = () => {
    const words = box.value.toLowerCase().split(/\s+/).filter(Boolean);
    list.replaceChildren();
    list.hidden = words.length === 0;
    if (list.hidden) return;
    const found = rows
      .map((entry) => [weight(entry, words), entry])
      .filter(([sum]) => sum > 0)
      .sort((a, b) => b[0] - a[0] || a[1].name.length - b[1].name.length)
      .slice(0, LIMIT);
    for (const [, { row }] of found) {
      const item = document.createElement("li");
      const link = document.createElement("a");
      link.href = up + row[1];
      link.textContent = row[0];
      const note = document.createElement("small");
      note.textContent = ` ${row[2]} - ${row[3].slice(0, 140)}`;
      item.append(link, note);
      list.append(item);
    }
    if (found.length === 0) list.append(Object.assign(document.createElement("li"), { textContent: "Nothing found." }));
  };

  box.addEventListener("input", show);
  box.addEventListener("keydown", (event) => {
    if (event.key === "Enter") list.querySelector("a")?.click();
    if (event.key === "Escape") { box.value = ""; show(); }
  });
})();
