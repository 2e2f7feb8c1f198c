// A JSON document as a collapsible tree that keeps which branches a person opened across refreshes,
// marks the values that changed since the last one, and offers each number to the watch.
//   const tree = new JsonTree(element, { onPick: (pointer, value) => ..., openDepth: 1 });
//   tree.show(document);     // again on every refresh; nothing is redrawn when nothing changed

export class JsonTree {
  constructor(element, { onPick = null, openDepth = 1 } = {}) {
    this.element = element;
    this.onPick = onPick;
    this.openDepth = openDepth;
    this.opened = new Map(); // pointer -> open?, as the person left it
    this.previous = undefined;
    this.text = undefined;
  }

  show(document) {
    const text = JSON.stringify(document);
    if (text === this.text) {
      return;
    }
    const previous = this.previous;
    this.previous = document;
    this.text = text;
    const scroll = this.element.scrollTop;
    const root = window.document.createElement("ul");
    root.append(this.item(null, document, "", previous, 0, previous !== undefined));
    this.element.replaceChildren(root);
    this.element.scrollTop = scroll;
  }

  clear(note = "") {
    this.previous = undefined;
    this.text = undefined;
    this.element.replaceChildren();
    if (note) {
      const p = window.document.createElement("p");
      p.className = "note";
      p.textContent = note;
      this.element.append(p);
    }
  }

  item(key, value, pointer, previous, depth, compare) {
    const li = window.document.createElement("li");
    const label = key === null ? [] : [span("key", key), ": "];
    if (value !== null && typeof value === "object") {
      const entries = Array.isArray(value) ? value.map((v, i) => [String(i), v]) : Object.entries(value);
      const details = window.document.createElement("details");
      const remembered = this.opened.get(pointer);
      details.open = remembered === undefined ? depth < this.openDepth : remembered;
      details.addEventListener("toggle", () => this.opened.set(pointer, details.open));
      const summary = window.document.createElement("summary");
      const shape = Array.isArray(value) ? `[${entries.length}]` : `{${entries.length}}`;
      summary.append(...label, span("v-null", shape));
      const list = window.document.createElement("ul");
      for (const [childKey, child] of entries) {
        const before = previous !== null && typeof previous === "object" ? previous[childKey] : undefined;
        list.append(this.item(childKey, child, `${pointer}/${escapeKey(childKey)}`, before, depth + 1, compare));
      }
      details.append(summary, list);
      li.append(details);
      return li;
    }
    const shown = span(`v-${value === null ? "null" : typeof value}`, JSON.stringify(value));
    if (compare && previous !== value) {
      shown.classList.add("changed");
    }
    li.append(...label, shown);
    if (typeof value === "number" && this.onPick) {
      const pick = window.document.createElement("button");
      pick.className = "watch-pick";
      pick.textContent = "⌁";
      pick.title = "Plot this value over time";
      pick.dataset.pointer = pointer;
      pick.addEventListener("click", () => this.onPick(pointer, value));
      li.append(pick);
    }
    return li;
  }
}

function span(className, text) {
  const element = document.createElement("span");
  element.className = className;
  element.textContent = text;
  return element;
}

// JSON Pointer escapes, so that a key holding "/" or "~" still names one member.
export function escapeKey(key) {
  return String(key).replace(/~/g, "~0").replace(/\//g, "~1");
}

export function resolvePointer(document, pointer) {
  if (pointer === "") {
    return document;
  }
  let value = document;
  for (const raw of pointer.split("/").slice(1)) {
    const key = raw.replace(/~1/g, "/").replace(/~0/g, "~");
    if (value === null || typeof value !== "object" || !(key in value)) {
      return undefined;
    }
    value = value[key];
  }
  return value;
}
