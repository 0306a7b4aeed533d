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

  function show(wanted) {
    const last = held.length - 1;
    const now = Math.min(Math.max(wanted, 0), last);
    place.value = now;
    pairs[now].forEach((picture, side) => {
      for (const where of ["scene", "over"]) {
        const image = byId(`${where}-${["before", "after"][side]}`);
        if (image) image.src = decoded[picture].src;
      }
    });
    output.textContent = `Frame ${held[now]} of 0 to ${frames - 1}`;
    place.setAttribute("aria-valuetext", `frame ${held[now]}`);
    byId("previous").disabled = now === 0;
    byId("next").disabled = now === last;
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

  document.querySelectorAll(".controls").forEach((controls) => controls.hidden = false);
  show(now());
})();
