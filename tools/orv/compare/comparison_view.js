"use strict";

const byId = (id) => document.getElementById(id);

// What is looked at. A zoom of null fits the picture into its pane; else it tells how many pixels
// of the screen a pixel of the picture takes. The centre is a share of the picture's sides.
const look = { view: "slider", split: 50, zoom: null, x: 0.5, y: 0.5, gain: 1 };
const ZOOMS = [0.05, 0.1, 0.17, 0.25, 0.33, 0.5, 0.67, 1, 1.5, 2, 3, 4, 6, 8, 12, 16, 24, 32];
const LARGEST_FIT = 1;

const clamp = (value, from, to) => Math.min(Math.max(value, from), to);

/** Size of the picture and of a pane in CSS pixels, and how many of those a pixel takes. */
function geometry() {
    const stage = byId("stage");
    const [width, height] = [byId("before").naturalWidth || 1, byId("before").naturalHeight || 1];
    const pane = { width: look.view === "side" ? stage.clientWidth / 2 - 2 : stage.clientWidth, height: stage.clientHeight };
    const dots = window.devicePixelRatio || 1;
    const fit = Math.min(pane.width / width, pane.height / height, LARGEST_FIT / dots);
    const scale = look.zoom === null ? fit : look.zoom / dots;
    return { width, height, pane, dots, fit, scale };
}

/** Where the picture begins along one axis; a picture that is smaller than its pane is centred. */
function start(centre, size, pane) {
    return size <= pane ? (pane - size) / 2 : clamp(pane / 2 - centre * size, pane - size, 0);
}

/** The part of the stage that the picture covers along x: where the line can go. */
function span(left, size, pane) {
    return { from: Math.max(left, 0), to: Math.min(left + size, pane) };
}

/** As high as the picture needs at full width, and never higher than most of the window. */
function stageHeight() {
    const { width, height, dots } = geometry();
    const wide = byId("stage").clientWidth / (look.view === "side" ? 2 : 1);
    const wanted = height * Math.min(wide / width, LARGEST_FIT / dots);
    return Math.round(clamp(wanted, 160, Math.max(240, 0.74 * window.innerHeight)));
}

function show() {
    const stage = byId("stage");
    stage.dataset.view = look.view;
    stage.style.setProperty("--height", `${stageHeight()}px`);
    const { width, height, pane, dots, scale } = geometry();
    const [w, h] = [width * scale, height * scale];
    const [x, y] = [start(look.x, w, pane.width), start(look.y, h, pane.height)];
    const { from, to } = span(x, w, pane.width);
    const place = { "--x": x, "--y": y, "--w": w, "--h": h, "--split": from + ((to - from) * look.split) / 100 };
    for (const [name, value] of Object.entries(place)) {
        stage.style.setProperty(name, `${value}px`);
    }
    stage.style.setProperty("--gain", String(look.gain));
    stage.classList.toggle("moves", w > pane.width + 0.5 || h > pane.height + 0.5);
    stage.classList.toggle("enlarge", scale * dots > 1.5);

    byId("split").value = String(look.split);
    byId("split").setAttribute("aria-valuetext", `${look.split} % before, ${100 - look.split} % after`);
    byId("slider").classList.toggle("off", look.view !== "slider");
    byId("gainLabel").hidden = look.view !== "difference";
    byId("gain").value = String(look.gain);
    byId("differenceCaption").textContent = look.gain === 1 ? "Difference" : `Difference, ${look.gain} times amplified`;
    const percent = 100 * scale * dots;
    byId("scale").textContent = `${percent < 10 ? percent.toFixed(1) : Math.round(percent)} %`;
    byId("fit").setAttribute("aria-pressed", String(look.zoom === null));
    byId("full").setAttribute("aria-pressed", String(look.zoom === 1));
    byId("double").setAttribute("aria-pressed", String(look.zoom === 2));
    const chosen = document.querySelector(`input[name="view"][value="${look.view}"]`);
    chosen.checked = true;
}

/** Sets the zoom so that the point (x, y) of a pane stays where it is; without one, the middle. */
function zoomTo(zoom, point = null) {
    const before = geometry();
    const at = point || { x: before.pane.width / 2, y: before.pane.height / 2 };
    const size = { x: before.width * before.scale, y: before.height * before.scale };
    const held = {
        x: clamp((at.x - start(look.x, size.x, before.pane.width)) / size.x, 0, 1),
        y: clamp((at.y - start(look.y, size.y, before.pane.height)) / size.y, 0, 1),
    };
    look.zoom = zoom;
    const { width, height, pane, scale } = geometry();
    look.x = held.x + (pane.width / 2 - at.x) / (width * scale);
    look.y = held.y + (pane.height / 2 - at.y) / (height * scale);
    settle();
}

/** Keeps the centre where the picture fills its pane. */
function settle() {
    const { width, height, pane, scale } = geometry();
    const hold = (centre, size, room) => (size <= room ? 0.5 : clamp(centre, room / 2 / size, 1 - room / 2 / size));
    look.x = hold(look.x, width * scale, pane.width);
    look.y = hold(look.y, height * scale, pane.height);
    show();
}

/** The next zoom up or down in the list. */
function zoomBy(steps, point = null) {
    const { scale, dots } = geometry();
    const now = scale * dots;
    const next = steps > 0 ? ZOOMS.find((zoom) => zoom > now * 1.01) : ZOOMS.findLast((zoom) => zoom < now * 0.99);
    if (next !== undefined) {
        zoomTo(next, point);
    }
}

function moveBy(dx, dy) {
    const { width, height, scale } = geometry();
    look.x -= dx / (width * scale);
    look.y -= dy / (height * scale);
    settle();
}

function setView(view) {
    look.view = view;
    show();
    settle();
}

/** Puts the line at a place of the stage. */
function splitAt(x) {
    const { width, pane, scale } = geometry();
    const { from, to } = span(start(look.x, width * scale, pane.width), width * scale, pane.width);
    look.split = Math.round(clamp((100 * (x - from)) / (to - from || 1), 0, 100));
    show();
}

/** Where an event is in its pane; both panes of "side by side" begin at 0. */
function placeOf(event) {
    const box = byId("stage").getBoundingClientRect();
    const x = event.clientX - box.left;
    const half = box.width / 2;
    return { x: look.view === "side" && x > half ? x - half - 2 : x, y: event.clientY - box.top };
}

function listenToPointers() {
    const stage = byId("stage");
    const fingers = new Map();
    let grip = null;

    stage.addEventListener("pointerdown", (event) => {
        if (event.button !== 0) {
            return;
        }
        stage.setPointerCapture(event.pointerId);
        fingers.set(event.pointerId, placeOf(event));
        const onLine = event.target === byId("divider");
        const moves = stage.classList.contains("moves");
        grip = look.view === "slider" && (onLine || !moves) ? "line" : "picture";
        if (grip === "line" && fingers.size === 1) {
            splitAt(placeOf(event).x);
        }
    });
    stage.addEventListener("pointermove", (event) => {
        const last = fingers.get(event.pointerId);
        if (last === undefined) {
            return;
        }
        const here = placeOf(event);
        if (fingers.size === 2) {
            pinch(event.pointerId, here);
        } else if (grip === "line") {
            splitAt(here.x);
        } else {
            moveBy(here.x - last.x, here.y - last.y);
        }
        fingers.set(event.pointerId, here);
    });
    for (const name of ["pointerup", "pointercancel"]) {
        stage.addEventListener(name, (event) => fingers.delete(event.pointerId));
    }
    stage.addEventListener("dblclick", (event) => zoomTo(look.zoom === null ? 1 : null, placeOf(event)));

    /** Zooms by the change of the fingers' distance around the one that rests. */
    function pinch(moving, here) {
        const resting = [...fingers].find(([id]) => id !== moving)[1];
        const last = fingers.get(moving);
        const apart = (a, b) => Math.hypot(a.x - b.x, a.y - b.y) || 1;
        const { scale, dots } = geometry();
        const zoom = (scale * dots * apart(here, resting)) / apart(last, resting);
        zoomTo(clamp(zoom, ZOOMS[0], ZOOMS.at(-1)), resting);
    }
}

function listenToWheel() {
    const stage = byId("stage");
    let turned = 0;
    stage.addEventListener(
        "wheel",
        (event) => {
            // A page that is scrolled past the picture goes on scrolling.
            if (!event.ctrlKey && !event.metaKey && document.activeElement !== stage) {
                return;
            }
            event.preventDefault();
            turned += event.deltaY * (event.deltaMode === 1 ? 30 : 1);
            if (Math.abs(turned) >= 40) {
                zoomBy(-Math.sign(turned), placeOf(event));
                turned = 0;
            }
        },
        { passive: false },
    );
}

function listenToKeys() {
    const step = 60;
    const keys = {
        "+": () => zoomBy(1),
        "=": () => zoomBy(1),
        "-": () => zoomBy(-1),
        0: () => zoomTo(null),
        1: () => zoomTo(1),
        2: () => zoomTo(2),
        ArrowLeft: () => moveBy(step, 0),
        ArrowRight: () => moveBy(-step, 0),
        ArrowUp: () => moveBy(0, step),
        ArrowDown: () => moveBy(0, -step),
        d: () => setView(look.view === "difference" ? "slider" : "difference"),
    };
    byId("stage").addEventListener("keydown", (event) => {
        const act = keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
        const scrolls = event.key.startsWith("Arrow") && !byId("stage").classList.contains("moves");
        if (act && !scrolls && !event.ctrlKey && !event.metaKey && !event.altKey) {
            event.preventDefault();
            act();
        }
    });
}

function listenToControls() {
    for (const input of document.querySelectorAll('input[name="view"]')) {
        input.addEventListener("change", () => setView(input.value));
    }
    byId("split").addEventListener("input", () => {
        look.split = Number(byId("split").value);
        show();
    });
    byId("gain").addEventListener("change", () => {
        look.gain = Number(byId("gain").value);
        show();
    });
    byId("fit").addEventListener("click", () => zoomTo(null));
    byId("full").addEventListener("click", () => zoomTo(1));
    byId("double").addEventListener("click", () => zoomTo(2));
    byId("in").addEventListener("click", () => zoomBy(1));
    byId("out").addEventListener("click", () => zoomBy(-1));
}

function startView() {
    document.body.classList.add("live");
    listenToPointers();
    listenToWheel();
    listenToKeys();
    listenToControls();
    for (const id of ["before", "after"]) {
        byId(id).addEventListener("load", settle);
    }
    new ResizeObserver(settle).observe(byId("stage"));
    window.addEventListener("resize", settle);
    settle();
}
