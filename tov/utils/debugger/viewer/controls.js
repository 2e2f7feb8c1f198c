// The execution controls and their keys, as in browser developer tools: F8 resumes (or suspends
// everything while running), F10 steps over, F11 steps in, Shift+F11 steps out. A control that cannot
// apply is disabled; every command says what it did or why the host refused it.
//   new Controls(api, model, connection, { afterCommand: wakePoller });

import { say } from "./message.js";

export class Controls {
  constructor(api, model, connection, { afterCommand }) {
    this.api = api;
    this.model = model;
    this.connection = connection;
    this.afterCommand = afterCommand;
    this.busy = false;
    this.buttons = {
      suspendAll: document.getElementById("btn-suspend-all"),
      suspendOne: document.getElementById("btn-suspend-one"),
      resume: document.getElementById("btn-resume"),
      stepOver: document.getElementById("btn-step-over"),
      stepIn: document.getElementById("btn-step-in"),
      stepOut: document.getElementById("btn-step-out"),
    };
    this.runState = document.getElementById("run-state");
    this.buttons.suspendAll.addEventListener("click", () => this.suspendAll());
    this.buttons.suspendOne.addEventListener("click", () => this.suspendOne());
    this.buttons.resume.addEventListener("click", () => this.resume());
    this.buttons.stepOver.addEventListener("click", () => this.step("stepover", "over"));
    this.buttons.stepIn.addEventListener("click", () => this.step("stepin", "in"));
    this.buttons.stepOut.addEventListener("click", () => this.step("stepout", "out"));
    document.addEventListener("keydown", (event) => this.onKey(event));
    model.on("status", () => this.refresh());
    model.on("selection", () => this.refresh());
    connection.onChange(() => this.refresh());
    this.refresh();
  }

  onKey(event) {
    const target = event.target;
    if (target && (target.tagName === "INPUT" || target.tagName === "TEXTAREA") && !event.key.startsWith("F")) {
      return;
    }
    const act = {
      F8: () => (this.isArmed() ? this.resume() : this.suspendAll()),
      F10: () => this.step("stepover", "over"),
      F11: () => (event.shiftKey ? this.step("stepout", "out") : this.step("stepin", "in")),
    }[event.key];
    if (act) {
      event.preventDefault();
      act();
    }
  }

  // Stopped, or about to stop by this page's doing: Resume applies (and cancels what was armed).
  isArmed() {
    return this.model.status.suspended || this.model.stepping !== null || this.model.suspending;
  }

  refresh() {
    const connected = this.connection.isConnected();
    const { suspended, entity, known } = this.model.status;
    const stepping = this.model.stepping !== null;
    const idle = connected && known && !this.busy;
    const armed = this.isArmed();
    this.buttons.suspendAll.disabled = !idle || armed;
    this.buttons.suspendOne.disabled = !idle || armed || this.model.selected === null;
    this.buttons.resume.disabled = !idle || !armed;
    for (const step of [this.buttons.stepOver, this.buttons.stepIn, this.buttons.stepOut]) {
      step.disabled = !idle || !suspended;
    }
    this.buttons.suspendOne.textContent = this.model.selected === null ? "Suspend entity" : `Suspend ${this.model.selected}`;
    const state = !known ? "unknown" : stepping ? "stepping" : suspended ? "suspended"
      : this.model.suspending ? "suspending" : "running";
    this.runState.dataset.state = state;
    this.runState.textContent = state === "suspended" && entity !== null ? `suspended (entity ${entity})`
      : state === "stepping" && this.model.stepping >= 0 ? `stepping (entity ${this.model.stepping})`
      : state === "suspending" ? "suspending…" : state === "unknown" ? "–" : state;
  }

  async command(path, body, describe) {
    if (this.busy) {
      return false;
    }
    this.busy = true;
    this.refresh();
    try {
      const reply = await this.api.post(path, body, { urgent: true });
      if (reply.ok) {
        say(describe.done, "done");
      } else {
        say(`${describe.what} refused: ${reply.error}`, "error");
      }
      return reply.ok;
    } catch (_) {
      say(`${describe.what}: the host did not answer`, "error");
      return false;
    } finally {
      this.busy = false;
      this.refresh();
      this.afterCommand();
    }
  }

  async suspendAll() {
    if (this.buttons.suspendAll.disabled) {
      return;
    }
    if (await this.command("debug/suspend", {}, {
      what: "Suspend all",
      done: "Suspending: every entity stops at its next frame change",
    })) {
      this.model.startSuspending();
    }
  }

  async suspendOne() {
    const entity = this.model.selected;
    if (this.buttons.suspendOne.disabled || entity === null) {
      return;
    }
    // The host reads an entity of 0 as no entity at all and then stops everything: say so, rather than
    // let "suspend 0" look like it stopped one.
    const done = entity === 0
      ? "Suspending all: the host takes entity 0 as every entity"
      : `Suspending entity ${entity} at its next frame change`;
    if (await this.command("debug/suspend", { entity }, { what: `Suspend entity ${entity}`, done })) {
      this.model.startSuspending();
    }
  }

  async resume() {
    if (this.buttons.resume.disabled) {
      return;
    }
    const wasArmed = !this.model.status.suspended;
    const ok = await this.command("debug/resume", {}, { what: "Resume", done: "Resumed" });
    if (!ok && wasArmed) {
      // Resume answers 400 while nothing is stopped, but it still clears what was armed.
      say("Cancelled: nothing was stopped yet, and nothing will stop now", "done");
    }
    this.model.clearArmed();
  }

  async step(path, name) {
    const entity = this.model.stoppedEntity();
    const button = { over: this.buttons.stepOver, in: this.buttons.stepIn, out: this.buttons.stepOut }[name];
    if (button.disabled) {
      return;
    }
    const who = entity === null ? "the stopped entity" : `entity ${entity}`;
    const ok = await this.command(`debug/${path}`, {}, {
      what: `Step ${name}`,
      done: `Stepping ${name}: ${who} runs to its next stop`,
    });
    if (ok) {
      this.model.startStepping(entity === null ? -1 : entity);
    }
  }
}
