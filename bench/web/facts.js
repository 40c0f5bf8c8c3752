// What the state says about the fields of an action: forms show what is, where it tells.

const GPS = ['none', 'searching', 'fix'];

const onOff = (value) => value ? 'on' : 'off';

// Action → its arguments as they are.
const VALUES = {
  speed: ({recorder}) => ({kmh: recorder.speed}),
  battery: ({recorder}) => ({volts: recorder.power.battery}),
  countdown: ({recorder}) => ({state: onOff(recorder.power.counting)}),
  accModel: ({recorder}) => ({state: onOff(recorder.accModel)}),
  voiceEndSuppress: ({recorder}) => ({state: onOff(recorder.voice.endSuppressed)}),
  timeSpeed: ({recorder}) => ({speed: String(recorder.timeSpeed)}),
  gps: ({recorder}) => ({state: GPS[recorder.gps]}),
};

// A bench that says less than this page knows of is no reason to fail.
function say(name, state) {
  try {
    return VALUES[name]?.(state);
  } catch {
    return undefined;
  }
}

export function valuesOf({name}, state) {
  return {...say(name, state), ...state.armed?.find(({action}) => action === name)?.arguments};
}
