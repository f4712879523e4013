classdef Shape
