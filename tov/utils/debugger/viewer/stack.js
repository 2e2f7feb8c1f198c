// The selected entity's stack of contexts, top first, each frame's data as a tree. A frame's data is
// read only while its entity is stopped: a running entity's frames come and go between two requests,
// and asking for one that just went would be answered 404.
//   const stack = new StackView(api, model, { onPick, onLocation });  await stack.poll();

import { JsonTree } from "./tree.js";

export class StackView {
  constructor(api, model, { onPick, onLocation }) {
    this.api = api;
    this.model = model;
    this.onPick = onPick;
    this.onLocation = onLocation;
    this.list = document.getElementById("stack-list");
    this.note = document.getElementById("stack-note");
    this.title = document.getElementById("stack-entity");
    this.frames = [];        // [{ index, location }] as last read
    this.trees = new Map();  // frame index -> JsonTree
    this.opened = new Map(); // frame index -> open?, as the person left it
    this.entity = null;
    model.on("selection", () => this.reset());
    this.reset();
  }

  reset() {
    this.entity = this.model.selected;
    this.frames = [];
    this.trees.clear();
    this.opened.clear();
    this.list.replaceChildren();
    this.title.textContent = this.entity === null ? "" : `entity ${this.entity}`;
    this.note.textContent = this.entity === null ? "Select an entity to see its stack of contexts." : "";
  }

  async poll() {
    const entity = this.entity;
    if (entity === null || !this.model.entities.includes(entity)) {
      if (entity !== null && this.model.entities.length > 0) {
        this.note.textContent = `The host has no entity ${entity}.`;
      }
      return;
    }
    const since = this.api.commands;
    const reply = await this.api.get(`debug/entities/${entity}/contexts`);
    if (entity !== this.entity) {
      return;
    }
    if (!reply.ok || !Array.isArray(reply.data)) {
      this.note.textContent = `The stack could not be read: ${reply.error}`;
      return;
    }
    this.frames = reply.data;
    for (const frame of this.frames) {
      this.model.addLocation(frame.location);
    }
    const top = this.frames.length > 0 ? this.frames[this.frames.length - 1].location : "";
    this.model.setTop(entity, top);
    const stopped = this.model.entityState(entity) === "suspended";
    this.note.textContent = stopped ? "" : "Frame data shows while the entity is stopped.";
    this.render(stopped);
    if (!stopped) {
      for (const tree of this.trees.values()) {
        tree.clear();
      }
      return;
    }
    for (const frame of this.frames) {
      if (!this.isOpen(frame.index)) {
        continue;
      }
      const data = await this.api.get(`debug/entities/${entity}/contexts/${frame.index}`, { since });
      if (entity !== this.entity || data.skipped) {
        return;
      }
      const tree = this.trees.get(frame.index);
      if (tree && data.ok) {
        tree.show(data.data === undefined ? {} : data.data);
      } else if (tree) {
        tree.clear(data.error);
      }
    }
  }

  isOpen(index) {
    const remembered = this.opened.get(index);
    return remembered === undefined ? index === this.frames.length - 1 : remembered;
  }

  render(stopped) {
    // Frames keep their element while their location stays, so that open trees and scrolling survive.
    const items = [];
    const existing = new Map([...this.list.children].map((li) => [li.dataset.key, li]));
    for (let i = this.frames.length - 1; i >= 0; --i) {
      const frame = this.frames[i];
      const key = `${frame.index} ${frame.location}`;
      let li = existing.get(key);
      if (!li) {
        li = this.makeFrame(frame, key);
      }
      li.classList.toggle("top", i === this.frames.length - 1 && stopped);
      const details = li.firstChild;
      if (details.open !== this.isOpen(frame.index)) {
        details.open = this.isOpen(frame.index);
      }
      items.push(li);
    }
    const same = items.length === this.list.children.length && items.every((li, i) => this.list.children[i] === li);
    if (!same) {
      this.list.replaceChildren(...items);
      for (const index of [...this.trees.keys()]) {
        if (index >= this.frames.length) {
          this.trees.delete(index);
        }
      }
    }
  }

  makeFrame(frame, key) {
    const li = document.createElement("li");
    li.dataset.key = key;
    const details = document.createElement("details");
    details.className = "frame";
    const summary = document.createElement("summary");
    const index = document.createElement("span");
    index.className = "index";
    index.textContent = frame.index;
    const location = document.createElement("span");
    location.className = "location";
    location.textContent = frame.location;
    const breakHere = document.createElement("button");
    breakHere.className = "watch-pick";
    breakHere.textContent = "●";
    breakHere.title = "Add a breakpoint at this location";
    breakHere.addEventListener("click", (event) => {
      event.preventDefault(); // the summary would fold the frame
      this.onLocation(frame.location);
    });
    summary.append(index, location, breakHere);
    const body = document.createElement("div");
    body.className = "tree";
    const entity = this.entity;
    const tree = new JsonTree(body, {
      openDepth: 2,
      onPick: (pointer) => this.onPick(`debug/entities/${entity}/contexts/${frame.index}`, pointer,
        `entity ${entity} ${frame.location.replace(/^.*\//, "")}${pointer}`),
    });
    tree.clear("…");
    this.trees.set(frame.index, tree);
    details.append(summary, body);
    details.open = this.isOpen(frame.index);
    details.addEventListener("toggle", () => this.opened.set(frame.index, details.open));
    li.append(details);
    return li;
  }
}
