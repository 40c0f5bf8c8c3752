#include "bench/server/gallerypage.h"

const char* const kGalleryPage = R"(<!doctype html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<link rel="icon" href="icon.svg">
<title>Dash camera: the gallery</title>
<style>body{font:15px/1.4 sans-serif;margin:24px;background:#262223;color:#fff}</style>
<h1>Dash camera: the gallery</h1>
<p>A picture of every screen in every state, and of every message box, in each language. This machine makes them when you say so;
meanwhile the camera goes on.</p>
<button>Make the pictures</button>
<p role="status"></p>
<script>
const button = document.querySelector('button');
const status = document.querySelector('[role=status]');

async function show() {
  document.documentElement.innerHTML = await (await fetch('/gallery')).text();
  document.getElementById(decodeURIComponent(location.hash.slice(1)))?.scrollIntoView();
}

async function follow() {
  const {gallery} = await (await fetch('/api/state')).json();
  if (gallery?.ready) return show();
  button.disabled = gallery !== null;
  if (!gallery) return;
  status.textContent = `${gallery.done} pictures so far`;
  setTimeout(follow, 500);
}

button.onclick = async () => {
  const answer = await fetch('/api/gallery', {method: 'POST'});
  status.textContent = answer.ok ? '' : (await answer.json()).error;
  follow();
};
follow();
</script>
</html>
)";
