import { Component, type ReactNode } from 'react';

interface Props {
  /** Shown in place of the children when drawing them has failed. */
  instead: (error: Error) => ReactNode;
  children: ReactNode;
}

/** A fault of one part of the desk must not take the others away: they may have orders to cancel. */
export class Boundary extends Component<Props, { error?: Error }> {
  override state: { error?: Error } = {};

  static getDerivedStateFromError(error: Error): { error: Error } {
    return { error };
  }

  override render(): ReactNode {
    const { error } = this.state;
    return error ? this.props.instead(error) : this.props.children;
  }
}
