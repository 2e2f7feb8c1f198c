// The connection to the host as a person sees it: connected, host gone (the last state stays on screen,
// dimmed) and reconnecting, with a growing pause between attempts so that a dead host costs nothing.
//   connection.onChange((state) => ...);  connection.markAnswered();  await connection.pauseAfterFailure();

const pill = () => document.getElementById("connection");

export class Connection {
  constructor() {
    this.state = "connecting";
    this.failures = 0;
    this.lastAnswer = null;
    this.listeners = [];
  }

  onChange(listener) { this.listeners.push(listener); }

  set(state, text) {
    const changed = state !== this.state;
    this.state = state;
    const element = pill();
    element.dataset.state = state;
    element.textContent = text;
    document.body.dataset.connection = state;
    if (changed) {
      for (const listener of this.listeners) {
        listener(state);
      }
    }
  }

  isConnected() { return this.state === "connected"; }

  markAnswered() {
    this.failures = 0;
    this.lastAnswer = new Date();
    this.set("connected", "connected");
  }

  // The pause before the next attempt: 0.5 s, doubling up to 8 s.
  nextDelay() { return Math.min(8000, 500 * 2 ** Math.min(this.failures - 1, 4)); }

  async pauseAfterFailure() {
    this.failures += 1;
    const delay = this.nextDelay();
    const since = this.lastAnswer ? ` since ${this.lastAnswer.toLocaleTimeString()}` : "";
    let left = Math.ceil(delay / 1000);
    this.set("gone", `host gone${since}, retrying in ${left} s`);
    const end = Date.now() + delay;
    while (Date.now() < end) {
      await sleep(Math.min(1000, end - Date.now()));
      left = Math.max(0, Math.ceil((end - Date.now()) / 1000));
      if (left > 0) {
        this.set("gone", `host gone${since}, retrying in ${left} s`);
      }
    }
    this.set("reconnecting", "reconnecting…");
  }
}

export function sleep(ms) {
  return new Promise((resolve) => setTimeout(resolve, ms));
}

export const connection = new Connection();
