// A development server for the web viewer: serves tov/utils/debugger/viewer/ at /ui/ straight from the
// source tree and passes /api/ on to a running host, so that the page is of one origin with the API as
// it is when the host serves it itself.
//   node tests/viewer/devserver.mjs --api-port 8000 [--port 8080]     then open http://127.0.0.1:8080/ui/

import crypto from "node:crypto";
import http from "node:http";
import fs from "node:fs/promises";
import path from "node:path";
import { fileURLToPath } from "node:url";

const here = path.dirname(fileURLToPath(import.meta.url));
export const viewerDir = path.resolve(here, "../../tov/utils/debugger/viewer");

const types = {
  ".html": "text/html; charset=utf-8",
  ".js": "text/javascript; charset=utf-8",
  ".css": "text/css; charset=utf-8",
  ".svg": "image/svg+xml",
  ".png": "image/png",
};

export const pageHeaders = {
  "Cache-Control": "no-cache",
  "Content-Security-Policy": "default-src 'self'; frame-ancestors 'none'; base-uri 'none'; form-action 'none'",
  "X-Content-Type-Options": "nosniff",
  "Referrer-Policy": "no-referrer",
};

// Starts the server; resolves with { server, port } once it listens.
export function startDevServer({ port = 0, apiPort, apiHost = "127.0.0.1" }) {
  const server = http.createServer(async (request, response) => {
    const url = new URL(request.url, "http://localhost");
    if (url.pathname.startsWith("/api/")) {
      forward(request, response, apiHost, apiPort);
      return;
    }
    // Without the slash the page's relative addresses (main.js, viewer.css) would miss the folder.
    if (url.pathname === "/" || url.pathname === "/ui") {
      response.writeHead(302, { Location: "/ui/" });
      response.end();
      return;
    }
    if (!url.pathname.startsWith("/ui/")) {
      response.writeHead(404).end();
      return;
    }
    const name = url.pathname.slice("/ui/".length) || "index.html";
    const file = path.resolve(viewerDir, name);
    if (!file.startsWith(viewerDir + path.sep) || !types[path.extname(file)]) {
      response.writeHead(404).end();
      return;
    }
    try {
      const body = await fs.readFile(file);
      // The headers a host serving the page sends too: revalidate every time by the content's tag, and
      // let the page run only its own files and talk only to its own origin.
      const etag = `"${crypto.createHash("sha256").update(body).digest("hex").slice(0, 20)}"`;
      const headers = { ...pageHeaders, ETag: etag };
      if (request.headers["if-none-match"] === etag) {
        response.writeHead(304, headers).end();
        return;
      }
      response.writeHead(200, { ...headers, "Content-Type": types[path.extname(file)] });
      response.end(body);
    } catch (_) {
      response.writeHead(404).end();
    }
  });
  return new Promise((resolve, reject) => {
    server.once("error", reject);
    server.listen(port, "127.0.0.1", () => resolve({ server, port: server.address().port }));
  });
}

// Passes one request on. The host may answer twice on one connection (POST on engines): only its first
// reply reaches the page, as it would reach the page's own fetch.
function forward(request, response, host, port) {
  const headers = { ...request.headers, host: `${host}:${port}` };
  delete headers.origin; // the page is of the host's own origin once the host serves it
  const upstream = http.request({ host, port, method: request.method, path: request.url, headers }, (reply) => {
    response.writeHead(reply.statusCode, reply.headers);
    reply.pipe(response);
  });
  upstream.on("error", () => {
    if (!response.headersSent) {
      // No host: the connection is dropped, as it would be with the host serving the page.
      response.destroy();
    }
  });
  request.pipe(upstream);
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  const option = (name, fallback) => {
    const at = process.argv.indexOf(name);
    return at > 0 ? Number(process.argv[at + 1]) : fallback;
  };
  const { port } = await startDevServer({ port: option("--port", 8080), apiPort: option("--api-port", 8000) });
  console.log(`open http://127.0.0.1:${port}/ui/`);
}
