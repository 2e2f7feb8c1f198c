// The line under the controls that says what the last action did, or why the host refused it.
//   say("Resumed", "done");  say("Step over refused: the host answered 400", "error");

let timer = null;

export function say(text, kind = "info") {
  const element = document.getElementById("message");
  element.textContent = text;
  element.dataset.kind = kind;
  element.title = text;
  clearTimeout(timer);
  // Errors stay until the next action; the rest fade after a while so that stale news is not read as new.
  if (kind !== "error") {
    timer = setTimeout(() => {
      element.textContent = "";
      element.dataset.kind = "";
    }, 8000);
  }
}
