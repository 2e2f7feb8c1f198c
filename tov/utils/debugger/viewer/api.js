// The one way the page talks to the host: every request goes through one queue, so that never more than
// one is in flight (the host answers one request at a time, and a simulation shares its lock with it).
// Commands a person gave jump ahead of the polls waiting in the queue.
//   const reply = await api.get("debug/entities");      // reply.ok, reply.status, reply.data, reply.error
//   await api.post("debug/suspend", {entity: 3}, {urgent: true});

const base = "/api/";
const timeoutMs = 5000;
const tokenKey = "tov-viewer-token";

// A host that wants a token gets it as "Authorization: Bearer ...". It comes once in the address
// (/ui/#token=...), is kept for the tab's life and taken out of the address, so that a link copied from
// the page does not carry it.
function takeToken() {
  const params = new URLSearchParams(location.hash.replace(/^#/, ""));
  const given = params.get("token");
  try {
    if (given) {
      sessionStorage.setItem(tokenKey, given);
    }
  } catch (_) {
    // Without storage the token lasts until the page is reloaded.
  }
  if (given !== null) {
    params.delete("token");
    const rest = params.toString();
    history.replaceState(null, "", rest ? `#${rest}` : location.pathname + location.search);
  }
  try {
    return given || sessionStorage.getItem(tokenKey) || "";
  } catch (_) {
    return given || "";
  }
}

const token = takeToken();

// The headers of every request; fetch calls made outside the queue (on leaving) use them too.
export function authorization() {
  return token ? { Authorization: `Bearer ${token}` } : {};
}

// Why the host said no, when its reply has no {"error": "..."} of its own (the exact startHttp form
// answers with bare statuses).
const statusTexts = {
  204: "the host has no such resource (204)",
  400: "the host refused it (400): the state does not allow it, or the request was malformed",
  401: "the host wants a token (401): open the page as /ui/#token=...",
  403: "the host refused this page (403 Forbidden)",
  404: "no such resource (404)",
  413: "the request was too large for the host (413)",
  500: "the host's logger holds an error (500): every answer is 500 until the host resets its errors",
};

export class HostGone extends Error {}

export class Api {
  constructor() {
    this.queue = [];
    this.running = false;
    this.sent = 0;
    this.commands = 0; // changes of the host's state asked for by this page, counted when asked
  }

  get(path, options = {}) { return this.request("GET", path, undefined, options); }
  post(path, body, options = {}) { return this.request("POST", path, body === undefined ? {} : body, options); }
  delete(path, options = {}) { return this.request("DELETE", path, undefined, options); }

  // Resolves with a reply for every answer the host gave, whatever its status; rejects with HostGone
  // when no answer came. A read made with `since: api.commands` is not sent once a command of this page
  // went first (it resolves as skipped): a frame read just after a resume would ask for a frame that
  // the running entity has already left.
  request(method, path, body, { urgent = false, since } = {}) {
    if (method !== "GET") {
      this.commands += 1;
    }
    return new Promise((resolve, reject) => {
      const job = { method, path, body, since, resolve, reject };
      if (urgent) {
        this.queue.unshift(job);
      } else {
        this.queue.push(job);
      }
      this.pump();
    });
  }

  async pump() {
    if (this.running) {
      return;
    }
    this.running = true;
    while (this.queue.length > 0) {
      const job = this.queue.shift();
      if (job.since !== undefined && job.since !== this.commands) {
        job.resolve({ status: 0, ok: false, skipped: true, data: undefined, error: "skipped after a command" });
        continue;
      }
      try {
        job.resolve(await this.send(job));
      } catch (error) {
        job.reject(error);
      }
    }
    this.running = false;
  }

  // Fails every request still waiting: the host is gone, and their answers would be stale anyway.
  dropQueued() {
    const jobs = this.queue.splice(0);
    for (const job of jobs) {
      job.reject(new HostGone("dropped"));
    }
  }

  async send({ method, path, body }) {
    const controller = new AbortController();
    const timer = setTimeout(() => controller.abort(), timeoutMs);
    const init = { method, cache: "no-store", signal: controller.signal, headers: authorization() };
    if (body !== undefined) {
      init.body = JSON.stringify(body);
      init.headers["Content-Type"] = "application/json";
    }
    this.sent += 1;
    let response;
    let text;
    try {
      response = await fetch(base + path, init);
      text = await response.text();
    } catch (error) {
      throw new HostGone(error && error.name === "AbortError" ? "no answer within 5 s" : "no connection");
    } finally {
      clearTimeout(timer);
    }
    return makeReply(response.status, text);
  }
}

export function makeReply(status, text) {
  let data;
  let parsed = false;
  if (text.length > 0) {
    try {
      data = JSON.parse(text);
      parsed = true;
    } catch (_) {
      data = undefined;
    }
  }
  const hostError = parsed && data !== null && typeof data === "object" && !Array.isArray(data) &&
    typeof data.error === "string" ? data.error : "";
  // A 500 with a document is still the resource: the exact form turns every answer to 500 once the
  // host's logger holds an error, and the document is right all the same.
  const ok = !hostError && (status === 200 || (status === 500 && parsed));
  return {
    status,
    ok,
    data: hostError ? undefined : data,
    tainted: status === 500,
    error: ok ? "" : hostError || statusTexts[status] || `the host answered ${status}`,
  };
}

// A path below /api/, its segments joined as they are: the host's paths take no percent escapes.
export function joinPath(...segments) {
  return segments.filter((s) => s !== "" && s !== undefined).map(String).join("/");
}

export const api = new Api();
