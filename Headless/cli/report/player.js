// Steps through the frames that the page holds. Without it the page shows one of them.
"use strict";
(() => {
  const read = (id) => JSON.parse(document.getElementById(id).textContent);
  const { held, frames, frameRate } = read("report").animation;
  const { pictures, frames: pairs } = read("frames");
  const byId = (id) => document.getElementById(id);
  const [place, play, output] = ["place", "play", "frame"].map(byId);
  const still = matchMedia("(prefers-reduced-motion: reduce)");
  let timer = 0;

  // Kept, so that each is decoded once.
  const decoded = pictures.map((uri) => Object.assign(new Image(), { src: uri }));

  // Over black, as each picture would lie on the canvas.
  function pixels(image, canvas) {
    const context = canvas.getContext("2d", { willReadFrequently: true });
    context.fillRect(0, 0, canvas.width, canvas.height);
    context.drawImage(image, 0, 0);
    return context.getImageData(0, 0, canvas.width, canvas.height);
  }

  function showDifference(before, after) {
    const canvas = byId("difference");
    canvas.width = before.naturalWidth;
    canvas.height = before.naturalHeight;
    const first = pixels(before, canvas);
    const second = pixels(after, canvas);
    first.data.forEach((level, i) => {
      if (i % 4 !== 3) first.data[i] = 8 * Math.abs(level - second.data[i]);
    });
    canvas.getContext("2d").putImageData(first, 0, 0);
  }

  async function show(wanted) {
    const last = held.length - 1;
    const now = Math.min(Math.max(wanted, 0), last);
    place.value = now;
    const [before, after] = pairs[now].map((picture) => decoded[picture]);
    byId("scene-before").src = before.src;
    byId("scene-after").src = after.src;
    output.textContent = `Frame ${held[now]}, of 0 to ${frames - 1}`;
    place.setAttribute("aria-valuetext", `frame ${held[now]}`);
    byId("previous").disabled = now === 0;
    byId("next").disabled = now === last;
    if (byId("difference")) {
      await Promise.all([before.decode(), after.decode()]);
      if (Number(place.value) === now) showDifference(before, after);
    }
  }

  function pause() {
    clearTimeout(timer);
    timer = 0;
    play.textContent = "Play";
    output.setAttribute("aria-live", "polite");
  }

  function advance() {
    const now = Number(place.value);
    const next = (now + 1) % held.length;
    show(next);
    const span = next + 1 < held.length ? held[next + 1] - held[next] : 1;
    timer = setTimeout(advance, Math.max((span / frameRate) * 1000, still.matches ? 500 : 0));
  }

  function toggle() {
    if (timer) return pause();
    play.textContent = "Pause";
    output.setAttribute("aria-live", "off");  // not every frame of a moving picture
    advance();
  }

  function step(to) {
    pause();
    show(to);
  }

  const now = () => Number(place.value);
  play.addEventListener("click", toggle);
  byId("previous").addEventListener("click", () => step(now() - 1));
  byId("next").addEventListener("click", () => step(now() + 1));
  place.addEventListener("input", () => step(now()));
  document.addEventListener("keydown", (event) => {
    const busy = event.target.closest("input, button, .scrolls");
    if (event.altKey || event.ctrlKey || event.metaKey || event.shiftKey) return;
    const steps = { ArrowLeft: now() - 1, ArrowRight: now() + 1 };
    if (event.key in steps && !event.target.closest("input, .scrolls")) step(steps[event.key]);
    else if (event.key === " " && !busy) toggle();
    else return;
    event.preventDefault();
  });

  document.querySelectorAll("#player [hidden]").forEach((element) => element.hidden = false);
  show(now());
})();
