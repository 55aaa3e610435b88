// SPDX-License-Identifier: MIT
// The forms of the identity provider: fields whose value lives in the page's own model, as with the
// usual page frameworks, and the challenge that tells people from programs.
"use strict";
(() => {
  const { challenge, delay, state } = document.documentElement.dataset;
  const native = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, "value");
  const form = document.forms[0];

  // The model follows "input" events. A value that a script assigns to the field itself is taken
  // for the page's own doing and does not reach the model.
  function control(input) {
    let known = native.get.call(input);
    let model = known;
    Object.defineProperty(input, "value", {
      configurable: true,
      get() { return native.get.call(this); },
      set(value) { known = String(value); native.set.call(this, value); },
    });
    input.addEventListener("input", () => {
      const value = native.get.call(input);
      if (value !== known) known = model = value;
    });
    form.addEventListener("submit", () => native.set.call(input, model));
  }

  async function solve(field) {
    field.value = await (await fetch(`/challenge?state=${state}`)).json();
  }

  function addChallenge() {
    const field = document.createElement("input");
    field.type = "hidden";
    field.name = "captcha";
    const place = document.getElementById("challenge");
    place.append(field);
    if (challenge === "solved") {
      setTimeout(() => solve(field), Number(delay));
    } else {
      const button = document.createElement("button");
      button.type = "button";
      button.id = "human";
      button.textContent = "Jeg er et menneske";
      button.onclick = async () => {
        await solve(field);
        button.textContent = "Bekreftet";
      };
      place.append(button);
    }
  }

  for (const input of form.querySelectorAll("#username:not([type=hidden]), #password")) control(input);
  if (challenge !== "none") addChallenge();
})();
